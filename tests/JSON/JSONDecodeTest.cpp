#include "MenubarCore/JSON/JSONValue.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;
using Array = JSONValue::Array;
using Object = JSONValue::Object;

namespace {

JSONValue decoded(std::string_view document) {
    const auto value = JSONValue::decode(document);
    EXPECT_TRUE(value.has_value()) << document << ": " << describe(value.error());
    return value.value_or("not decoded");
}

double number(const std::string& document) {
    return decoded(document).numberValue().value();
}

} // namespace

TEST(DecodingValues, oneIsANumberAndTrueIsABool) {
    EXPECT_EQ(decoded("1").kind(), JSONValue::Case::number);
    EXPECT_EQ(decoded("0").kind(), JSONValue::Case::number);
    EXPECT_EQ(decoded("1"), JSONValue(1.0));
    EXPECT_EQ(decoded("true"), JSONValue(true));
    EXPECT_EQ(decoded("false"), JSONValue(false));
}

TEST(DecodingValues, digitsInQuotesAreAString) {
    EXPECT_EQ(decoded("\"1\""), JSONValue("1"));
}

TEST(DecodingValues, aBareScalarIsADocument) {
    EXPECT_EQ(decoded("null"), JSONValue(nullptr));
    EXPECT_EQ(decoded(" \n 12.5 \n"), JSONValue(12.5));
    EXPECT_EQ(decoded("\t\"text\" "), JSONValue("text"));
    EXPECT_EQ(decoded(" true "), JSONValue(true));
    EXPECT_EQ(decoded("\"\""), JSONValue(""));
}

TEST(DecodingValues, containersNest) {
    EXPECT_EQ(decoded("[]"), JSONValue(Array{}));
    EXPECT_EQ(decoded("{}"), JSONValue(Object{}));
    EXPECT_EQ(decoded(R"([1, "a", [true, [], {}], {"k": null, "l": [{}]}])"),
              JSONValue(Array{1, "a", Array{true, Array{}, Object{}},
                              Object{{"k", nullptr}, {"l", Array{JSONValue(Object{})}}}}));
}

TEST(DecodingValues, ofDuplicateKeysTheLastWinsAtEveryDepth) {
    EXPECT_EQ(decoded(R"({"a":1,"b":2,"a":{"c":3,"c":[]}})"),
              JSONValue(Object{{"a", Object{{"c", Array{}}}}, {"b", 2}}));
    EXPECT_EQ(decoded(R"({"a":1,"\u0061":null})"), JSONValue(Object{{"a", nullptr}}));
}

TEST(DecodingValues, stringsAreUnescaped) {
    EXPECT_EQ(decoded(R"("a\"b\\c\/d\b\f\n\r\t\u00e9\uD83D\uDE00")"), JSONValue("a\"b\\c/d\b\f\n\r\té😀"));
    EXPECT_EQ(decoded(R"("\u0000")"), JSONValue(std::string("\0", 1)));
    EXPECT_EQ(decoded(R"({"\u006b\n":"\u0076"})"), JSONValue(Object{{"k\n", "v"}}));
    EXPECT_EQ(decoded("\"日本 👩‍💻 \x7F\""), JSONValue("日本 👩‍💻 \x7F"));
}

TEST(DecodingValues, escapesStandForTheirCharacters) {
    struct Case {
        const char* raw;
        std::string text;
    };

    for (const auto& [raw, text] :
         std::vector<Case>{{R"(\"\\\/\b\f\n\r\t)", "\"\\/\b\f\n\r\t"},
                           {R"(\u0041\u00e9\u00E9)", "Aéé"},
                           {R"(\u007f\u0080\u07ff\u0800\uffff)", "\x7F\u0080\u07FF\u0800\uFFFF"},
                           {R"(\ud7ff\ue000)", "\uD7FF\uE000"},
                           {R"(\ud800\udc00)", "\U00010000"},
                           {R"(\uD83D\uDE00!)", "😀!"},
                           {R"(\udbff\udfff)", "\U0010FFFF"},
                           {R"(a\nb\nc)", "a\nb\nc"},
                           {R"(\\u0041)", "\\u0041"},
                           {R"(\\)", "\\"},
                           {R"(\\\")", "\\\""}}) {
        EXPECT_EQ(decoded("\"" + std::string(raw) + "\""), JSONValue(text)) << raw;
        EXPECT_EQ(decoded("{\"" + std::string(raw) + "\":0}"), JSONValue(Object{{text, 0}})) << raw;
    }
}

TEST(DecodingValues, keysComeInTheOrderOfTheirBytesHoweverTheyBegin) {
    const Object object{{"", 0},         {"a", 1},         {std::string("a\0", 2), 2},
                        {"abcdefgh", 3}, {"abcdefghA", 4}, {"abcdefghi", 5},
                        {"abcdefgi", 6}, {"é", 7}};
    EXPECT_EQ(decoded(R"({"é":7,"abcdefghi":5,"abcdefgi":6,"a\u0000":2,"abcdefgh":3,"abcdefghA":4,"a":1,"":0})"),
              JSONValue(object));
}

TEST(DecodingValues, numbersBecomeTheNearestDouble) {
    struct Case {
        const char* text;
        double value;
    };

    for (const auto& [text, value] :
         std::vector<Case>{{"40", 40.0},
                           {"-0.3", -0.3},
                           {"1E-2", 0.01},
                           {"9007199254740993", 9007199254740992.0},
                           {"18446744073709551615", 18446744073709551615.0},
                           {"18446744073709551616", 18446744073709551616.0},
                           {"-9223372036854775808", -9223372036854775808.0},
                           {"-9223372036854775809", -9223372036854775808.0},
                           {"-36893488147419103233", -36893488147419103232.0},
                           {"0.1234567890123456789012345678901234567890", 0.1234567890123456789},
                           {"1.7976931348623158e308", std::numeric_limits<double>::max()},
                           {"5e-324", std::numeric_limits<double>::denorm_min()},
                           {"1e-99999999999999999999", 0.0}}) {
        EXPECT_EQ(number(text), value) << text;
        EXPECT_EQ(decoded("[" + std::string(text) + "]"), JSONValue(Array{value})) << text;
        EXPECT_EQ(decoded("{\"a\": " + std::string(text) + " }"), JSONValue(Object{{"a", value}})) << text;
    }
}

TEST(DecodingValues, minusZeroWithAFractionOrAnExponentKeepsItsSign) {
    EXPECT_TRUE(std::signbit(number("-0.0")));
    EXPECT_TRUE(std::signbit(number("-0.0e5")));
    EXPECT_TRUE(std::signbit(number("-1e-400")));
    EXPECT_FALSE(std::signbit(number("0")));
    EXPECT_EQ(decoded("-0").compactText(), "0"); // an integer, which has no sign of zero
}

TEST(DecodingValues, integersOfMoreThanSixtyFourBitsStandBesideEverythingElse) {
    EXPECT_EQ(decoded(R"({"18446744073709551616":[18446744073709551616,"99999999999999999999",-99999999999999999999],
                         "a\"99999999999999999999":9007199254740993,"b":[9223372036854775807,1e0,-1]})"),
              JSONValue(Object{{"18446744073709551616", Array{0x1p64, "99999999999999999999", -1e20}},
                               {"a\"99999999999999999999", 0x1p53},
                               {"b", Array{0x1p63, 1, -1}}}));
}

TEST(DecodingValues, everyFiniteDoubleReadsBackFromItsText) {
    std::mt19937_64 random(20250304);
    for (int i = 0; i < 5'000; ++i) {
        const std::uint64_t bits = random();
        const auto value = std::bit_cast<double>(bits);
        if (std::isfinite(value)) {
            EXPECT_EQ(number(JSONValue::format(value)), value);
        }
    }
}

TEST(DecodingValues, whatWasWrittenReadsBackInBothLayouts) {
    const JSONValue value = Object{{"numbers", Array{0.1, -3, 1e300, 5e-324, 123456789012345.0}},
                                   {"texts", Array{"", "a/b\"\\\n\x01\x7F", "é\u2028😀"}},
                                   {"", Object{{"nested", Array{nullptr, true, false, Array{}, Object{}}}}}};
    EXPECT_EQ(decoded(value.encode(JSONLayout::compact).value()), value);
    EXPECT_EQ(decoded(value.encode(JSONLayout::pretty).value()), value);
}

TEST(DecodingValues, aLargeDocumentLeavesNothingBehindForTheNext) {
    std::string large = "[";
    for (int i = 0; i < 600'000; ++i) {
        large += "1234567,";
    }
    const JSONValue value = decoded(large + "0]");
    EXPECT_EQ(value.arrayValue()->size(), 600'001U);
    EXPECT_EQ(decoded("[1]"), JSONValue(Array{1}));
    EXPECT_FALSE(JSONValue::decode("[1").has_value());
    EXPECT_FALSE(JSONValue::decode(large).has_value());
    EXPECT_EQ(decoded("[1]"), JSONValue(Array{1}));
    EXPECT_EQ(decoded("\"" + std::string(std::size_t{17} << 20U, 'x') + "\"").kind(), JSONValue::Case::string);
    EXPECT_EQ(decoded("[1]"), JSONValue(Array{1}));
}
