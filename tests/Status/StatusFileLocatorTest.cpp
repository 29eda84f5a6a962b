#include "MenubarCore/Status/StatusFileLocator.h"

#include <map>
#include <string>

#include <gtest/gtest.h>

using namespace menubar;

namespace {

/// A file system of a few files, some of them unreadable.
class Files : public FileManager {
public:
    explicit Files(std::map<std::string, std::expected<std::string, FileError>> files) : m_files(std::move(files)) {}

    [[nodiscard]] bool exists(const std::string& path) const override { return m_files.contains(path); }

    [[nodiscard]] std::expected<std::string, FileError> contents(const std::string& path) const override {
        return m_files.at(path);
    }

private:
    std::map<std::string, std::expected<std::string, FileError>> m_files;
};

std::string path(const std::string& value, std::string_view home = "/Users/a") {
    return StatusFileLocator::path({{"OSTREL_STATUS_FILE", value}, {"HOME", "/other"}}, home);
}

StatusSnapshot load(const std::string& document) {
    return StatusFileLocator::load("/s", Files({{"/s", document}}));
}

} // namespace

TEST(StatusFileLocator, theDefaultPathIsBelowTheHomeDirectory) {
    EXPECT_EQ(StatusFileLocator::path({}, "/Users/a"), "/Users/a/.local/state/ostrel/status.json");
    EXPECT_EQ(StatusFileLocator::path({}, "/Users/a/"), "/Users/a//.local/state/ostrel/status.json");
    EXPECT_EQ(StatusFileLocator::path({}, ""), "/.local/state/ostrel/status.json");
}

TEST(StatusFileLocator, theVariableNamesAnotherPath) {
    EXPECT_EQ(StatusFileLocator::environmentKey, "OSTREL_STATUS_FILE");
    EXPECT_EQ(path("/tmp/s.json"), "/tmp/s.json");
    EXPECT_EQ(path("relative/s.json"), "relative/s.json");
}

TEST(StatusFileLocator, anEmptyVariableCountsAsUnset) {
    EXPECT_EQ(path(""), "/Users/a/.local/state/ostrel/status.json");
}

TEST(StatusFileLocator, aLeadingTildeIsTheHomeDirectory) {
    EXPECT_EQ(path("~/s.json"), "/Users/a/s.json");
    EXPECT_EQ(path("~"), "/Users/a");
    EXPECT_EQ(path("~/s.json", "/Users/a/"), "/Users/a//s.json");
}

TEST(StatusFileLocator, anyOtherTildeStays) {
    EXPECT_EQ(path("~user/x"), "~user/x");
    EXPECT_EQ(path("/a/~/b"), "/a/~/b");
    EXPECT_EQ(path(" ~/b"), " ~/b");
}

TEST(StatusFileLocator, whereNothingIsTheSnapshotIsMissing) {
    const StatusSnapshot snapshot = StatusFileLocator::load("/s", Files({}));
    EXPECT_EQ(snapshot, StatusSnapshot::missing());
    EXPECT_EQ(snapshot.file(), nullptr);
}

TEST(StatusFileLocator, aGoodFileIsLoaded) {
    const StatusSnapshot snapshot = load(R"({"version":2})");
    EXPECT_EQ(snapshot, StatusSnapshot::loaded(StatusFile{.version = 2}));
    ASSERT_NE(snapshot.file(), nullptr);
    EXPECT_EQ(snapshot.file()->version, 2);
}

TEST(StatusFileLocator, aFileThatCannotBeReadIsUnreadableWithTheSystemsReason) {
    const Files files({{"/s", std::unexpected(FileError{"“s” could not be read: Permission denied"})}});
    const StatusSnapshot snapshot = StatusFileLocator::load("/s", files);
    EXPECT_EQ(snapshot, StatusSnapshot::unreadable("“s” could not be read: Permission denied"));
    EXPECT_EQ(snapshot.file(), nullptr);
}

TEST(StatusFileLocator, aFileThatDoesNotDecodeIsUnreadableWithTheReason) {
    EXPECT_EQ(load(""), StatusSnapshot::unreadable("expected a value at line 1, column 1, where the document ends"));
    EXPECT_EQ(load("[]"), StatusSnapshot::unreadable("type mismatch (Dictionary<String, Any>) at "));
    EXPECT_EQ(load(R"({"sessions":[{"contextTokens":"many"}]})"),
              StatusSnapshot::unreadable("type mismatch (Int) at sessions.Index 0.contextTokens"));
    EXPECT_EQ(load(R"({"at":"2025-13-01"})"), StatusSnapshot::unreadable("Unrecognised ISO-8601 date: 2025-13-01"));
}

TEST(StatusFileLocator, aSessionWithEmptyCapabilitiesMakesTheSnapshotUnreadable) {
    EXPECT_EQ(load(R"({"sessions":[{"capabilities":{}}]})"), StatusSnapshot::unreadable("missing key message"));
}

TEST(StatusFileLocator, eachErrorHasItsReasonText) {
    using Kind = DecodingError::Kind;
    const CodingPath place{{std::string("config")}, {std::size_t{3}}};
    EXPECT_EQ(StatusFileLocator::describe(DecodingError{.kind = Kind::typeMismatch, .expected = "Bool", .path = place}),
              "type mismatch (Bool) at config.Index 3");
    EXPECT_EQ(
        StatusFileLocator::describe(DecodingError{.kind = Kind::valueNotFound, .expected = "Double", .path = place}),
        "missing value (Double) at config.Index 3");
    EXPECT_EQ(StatusFileLocator::describe(DecodingError{.kind = Kind::keyNotFound, .key = "reason", .path = place}),
              "missing key reason");
    EXPECT_EQ(StatusFileLocator::describe(DecodingError{.description = "Unrecognised JSON value", .path = place}),
              "Unrecognised JSON value");
    EXPECT_EQ(StatusFileLocator::describe(FileError{"no"}), "no");
}
