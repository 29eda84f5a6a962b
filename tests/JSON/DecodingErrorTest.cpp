#include "MenubarCore/JSON/DecodingError.h"

#include <gtest/gtest.h>

using namespace menubar;
using Kind = DecodingError::Kind;

namespace {

CodingKey key(const char* name) {
    return {std::string(name)};
}

CodingKey index(std::size_t position) {
    return {position};
}

} // namespace

TEST(CodingPath, theRootIsEmpty) {
    EXPECT_EQ(describe(CodingPath{}), "");
}

TEST(CodingPath, stepsAreJoinedWithDotsAndPositionsAreNamed) {
    EXPECT_EQ(describe(CodingPath{key("config")}), "config");
    EXPECT_EQ(describe(CodingPath{key("sessions"), index(2), key("contextTokens")}), "sessions.Index 2.contextTokens");
    EXPECT_EQ(describe(CodingPath{index(0), index(10)}), "Index 0.Index 10");
}

TEST(CodingPath, anEmptyKeyStillHasItsPlace) {
    EXPECT_EQ(describe(CodingPath{key(""), key("a"), key("")}), ".a.");
}

TEST(DecodingError, aTypeMismatchNamesTheTypeAndThePath) {
    const DecodingError error{.kind = Kind::typeMismatch, .expected = "Int", .path = {key("version")}};
    EXPECT_EQ(describe(error), "type mismatch (Int) at version");
}

TEST(DecodingError, atTheRootTheTextEndsInABlank) {
    const DecodingError error{.kind = Kind::typeMismatch, .expected = "Dictionary<String, Any>"};
    EXPECT_EQ(describe(error), "type mismatch (Dictionary<String, Any>) at ");
}

TEST(DecodingError, aMissingValueNamesTheTypeAndThePath) {
    const DecodingError error{.kind = Kind::valueNotFound, .expected = "String", .path = {key("onCritical"), index(1)}};
    EXPECT_EQ(describe(error), "missing value (String) at onCritical.Index 1");
}

TEST(DecodingError, aMissingKeyIsNamedWithoutItsPath) {
    const DecodingError error{
        .kind = Kind::keyNotFound, .key = "message", .path = {key("sessions"), index(0), key("capabilities")}};
    EXPECT_EQ(describe(error), "missing key message");
}

TEST(DecodingError, corruptedDataIsDescribedByItsOwnText) {
    const DecodingError error{.description = "Unrecognised ISO-8601 date: 2025-13-01", .path = {key("at")}};
    EXPECT_EQ(describe(error), "Unrecognised ISO-8601 date: 2025-13-01");
}
