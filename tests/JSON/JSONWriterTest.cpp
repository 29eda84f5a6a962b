#include "MenubarCore/JSON/JSONValue.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

using namespace menubar;
using Array = JSONValue::Array;
using Object = JSONValue::Object;

namespace {

std::string compact(const JSONValue& value) {
    return value.encode(JSONLayout::compact).value();
}

std::string pretty(const JSONValue& value) {
    return value.encode(JSONLayout::pretty).value();
}

} // namespace

TEST(Writing, scalarsStandAlone) {
    for (const auto& [value, text] : std::vector<std::pair<JSONValue, std::string>>{
             {true, "true"}, {false, "false"}, {nullptr, "null"}, {"text", "\"text\""}, {1, "1"}}) {
        EXPECT_EQ(compact(value), text);
        EXPECT_EQ(pretty(value), text);
    }
}

TEST(Writing, numbersAreIntegersWhenWholeAndBelowTheLimit) {
    EXPECT_EQ(compact(12.0), "12");
    EXPECT_EQ(compact(12.5), "12.5");
    EXPECT_EQ(compact(-0.0), "0");
    EXPECT_EQ(compact(999999999999999.0), "999999999999999");
    EXPECT_EQ(compact(1e15), "1e+15");
    EXPECT_EQ(compact(0.0001), "0.0001");
    EXPECT_EQ(compact(1.5e-7), "1.5e-07");
}

TEST(Writing, nonFiniteNumbersFailTheWholeDocumentAtAnyDepth) {
    const double infinity = std::numeric_limits<double>::infinity();
    for (const JSONValue& value : std::vector<JSONValue>{std::nan(""), infinity, -infinity, Array{1, infinity},
                                                         Object{{"a", Array{Object{{"b", std::nan("")}}}}}}) {
        for (const JSONLayout layout : {JSONLayout::compact, JSONLayout::pretty}) {
            const auto text = value.encode(layout);
            ASSERT_FALSE(text.has_value());
            EXPECT_EQ(text.error(), EncodingError::nonFiniteNumber);
            EXPECT_EQ(describe(text.error()), "JSON has no form for a number that is not finite");
        }
    }
}

TEST(Writing, slashesAreEscaped) {
    EXPECT_EQ(compact("a/b"), R"("a\/b")");
}

TEST(Writing, everyControlCharacterIsEscaped) {
    std::string text;
    for (char c = 0; c < 0x20; ++c) {
        text += c;
    }
    EXPECT_EQ(compact(text), R"("\u0000\u0001\u0002\u0003\u0004\u0005\u0006\u0007\b\t\n\u000b\f\r\u000e\u000f)"
                             R"(\u0010\u0011\u0012\u0013\u0014\u0015\u0016\u0017\u0018\u0019\u001a\u001b\u001c\u001d)"
                             R"(\u001e\u001f")");
}

TEST(Writing, quotationMarksAndBackslashesAreEscaped) {
    EXPECT_EQ(compact("\"\\"), R"("\"\\")");
}

TEST(Writing, everythingElseIsRawUTF8) {
    const std::string text = "\x7F é \u2028 \uFEFF 日本 👩‍💻 '<&>";
    EXPECT_EQ(compact(text), "\"" + text + "\"");
}

TEST(Writing, illFormedBytesBecomeReplacementCharactersInKeysToo) {
    EXPECT_EQ(compact(Object{{"\xED\xA0\x80", "x\x80"}}), "{\"\uFFFD\uFFFD\uFFFD\":\"x\uFFFD\"}");
}

TEST(Writing, theCompactLayoutHasNoWhiteSpace) {
    const JSONValue value = Object{{"b", Array{1, Array{}, Object{}}}, {"a", Object{{"c", "x y"}}}};
    EXPECT_EQ(compact(value), R"({"a":{"c":"x y"},"b":[1,[],{}]})");
}

TEST(Writing, thePrettyLayoutIndentsByTwoAndSurroundsColonsWithBlanks) {
    const JSONValue value = Object{{"list", Array{1, Array{}, Object{}, Array{JSONValue(Array{true})}}},
                                   {"a", Object{{"c", nullptr}}},
                                   {"e", Object{}}};
    EXPECT_EQ(pretty(value), R"({
  "a" : {
    "c" : null
  },
  "e" : {},
  "list" : [
    1,
    [],
    {},
    [
      [
        true
      ]
    ]
  ]
})");
}

TEST(Writing, emptyContainersStayOnOneLine) {
    EXPECT_EQ(pretty(Array{}), "[]");
    EXPECT_EQ(pretty(Object{}), "{}");
}

TEST(Writing, keysAscendByCodePointAtEveryDepth) {
    const JSONValue value =
        Object{{"\U0001F600", 1}, {"\uFFFD", 2}, {"a", 3}, {"B", 4},  {"a10", 5},
               {"a2", 6},         {"", 7},       {"é", 8}, {"a-", 9}, {"Z", Object{{"y", 1}, {"x", 2}}}};
    EXPECT_EQ(compact(value), "{\"\":7,\"B\":4,\"Z\":{\"x\":2,\"y\":1},\"a\":3,\"a-\":9,\"a10\":5,\"a2\":6,\"é\":8,"
                              "\"\uFFFD\":2,\"\U0001F600\":1}");
}
