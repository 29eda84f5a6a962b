#include "MenubarCore/JSON/NumberToken.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;

namespace {

std::optional<std::int64_t> integer(std::string_view text) {
    const auto token = NumberToken::parse(text);
    EXPECT_TRUE(token.has_value()) << text;
    return token ? token->integer() : std::nullopt;
}

bool isBeyondDouble(std::string_view text) {
    const auto token = NumberToken::parse(text);
    EXPECT_TRUE(token.has_value()) << text;
    return token && token->isBeyondDouble();
}

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();

/// The smallest whole number that rounds to infinity.
const std::string firstBeyond =
    "1797693134862315807937289714053034150799341327100378269361737789804449682927647509466490179775872070963"
    "3028641669288791094655554785194040263065748867150582068190890200070838367627385484581771153176447573027"
    "0069855571366959622842914819860834936475292719074168444365510704342711559699508093042880177904174497792";

} // namespace

TEST(NumberToken, followsTheGrammarOfJSON) {
    for (const std::string text : {"0", "-0", "7", "10", "1.5", "0.5", "-0.5e-10", "1e3", "1E+3", "1e-03", "0e0",
                                   "123456789012345678901234567890"}) {
        EXPECT_TRUE(NumberToken::parse(text).has_value()) << text;
    }
    for (const std::string text : {"",      "-",   "+1",   "01",  "-01",      "00",        ".5",    "1.", "1.e5",
                                   "1e",    "1e+", "1e-",  "e5",  "1e5.0",    "0x10",      "1 ",    " 1", "1a",
                                   "1_000", "--1", "1..5", "NaN", "Infinity", "-Infinity", "1e1e1", "1,5"}) {
        EXPECT_FALSE(NumberToken::parse(text).has_value()) << text;
    }
}

TEST(NumberToken, wholeNumbersAreExactHoweverTheyAreWritten) {
    struct Case {
        const char* text;
        std::int64_t value;
    };

    for (const auto& [text, value] : std::vector<Case>{{"0", 0},
                                                       {"-0", 0},
                                                       {"0.0", 0},
                                                       {"-0.000e5", 0},
                                                       {"0e999999999", 0},
                                                       {"0e-999999999999999999999999", 0},
                                                       {"1.0", 1},
                                                       {"-1.0", -1},
                                                       {"1e3", 1000},
                                                       {"10e-1", 1},
                                                       {"1000e-2", 10},
                                                       {"1.5e1", 15},
                                                       {"0.001e3", 1},
                                                       {"0.00012e5", 12},
                                                       {"120e-1", 12},
                                                       {"9007199254740993", 9007199254740993},
                                                       {"9007199254740993.0", 9007199254740993},
                                                       {"90071992547409930e-1", 9007199254740993},
                                                       {"9223372036854775807", largest},
                                                       {"9.223372036854775807e18", largest},
                                                       {"9223372036854775807000e-3", largest},
                                                       {"-9223372036854775808", smallest},
                                                       {"-9223372036854775808.000", smallest},
                                                       {"1e18", 1'000'000'000'000'000'000}}) {
        EXPECT_EQ(integer(text), value) << text;
    }
}

TEST(NumberToken, whatIsNotWholeOrDoesNotFitIsNoInteger) {
    for (const char* text : {"1.5", "-0.5", "1e-1", "15e-1", "0.1e0", "1.0000000000000000000000001",
                             "9223372036854775808", "-9223372036854775809", "9223372036854775807.5", "1e19", "-1e19",
                             "18446744073709551616", "99999999999999999999", "1e999999999", "1e-999999999",
                             "1e99999999999999999999999999", "1e-99999999999999999999999999"}) {
        EXPECT_EQ(integer(text), std::nullopt) << text;
    }
}

TEST(NumberToken, manyDigitsTakeLinearTime) {
    const std::string zeros(10'000'000, '0');
    EXPECT_EQ(integer("1" + zeros + "e-10000000"), 1);
    EXPECT_EQ(integer("0." + zeros + "7e10000001"), 7);
    EXPECT_EQ(integer("0." + zeros + "e5"), 0);
    EXPECT_TRUE(isBeyondDouble("1" + zeros));
    EXPECT_FALSE(isBeyondDouble("0." + zeros + "1e10000000"));
    EXPECT_TRUE(isBeyondDouble("0." + zeros + "1e10000310"));
}

TEST(NumberToken, tellsWhetherANumberRoundsToInfinity) {
    EXPECT_FALSE(isBeyondDouble("1.7976931348623157e308"));
    EXPECT_FALSE(isBeyondDouble("1.7976931348623158e308"));
    EXPECT_FALSE(isBeyondDouble("-179.76931348623158e306"));
    EXPECT_TRUE(isBeyondDouble("1.7976931348623159e308"));
    EXPECT_TRUE(isBeyondDouble("-1.7976931348623159e308"));
    EXPECT_TRUE(isBeyondDouble("1E400"));
    EXPECT_TRUE(isBeyondDouble("-1e400"));
    EXPECT_TRUE(isBeyondDouble("1e99999999999999999999"));
    EXPECT_FALSE(isBeyondDouble("0e99999999999999999999"));
    EXPECT_FALSE(isBeyondDouble("1e-400"));
    EXPECT_FALSE(isBeyondDouble("0.0000000001e310"));
    EXPECT_TRUE(isBeyondDouble("20000000000e299"));
    EXPECT_FALSE(isBeyondDouble("10000000000e298"));
}

TEST(NumberToken, theHalfWayPointRoundsToInfinityAndEverythingBelowDoesNot) {
    ASSERT_EQ(firstBeyond.size(), 309U);
    std::string below = firstBeyond;
    below.replace(below.size() - 2, 2, "91");
    EXPECT_TRUE(isBeyondDouble(firstBeyond));
    EXPECT_TRUE(isBeyondDouble(firstBeyond + ".0"));
    EXPECT_TRUE(isBeyondDouble(firstBeyond + ".1"));
    EXPECT_TRUE(isBeyondDouble("0." + firstBeyond + "e309"));
    EXPECT_FALSE(isBeyondDouble(below));
    EXPECT_FALSE(isBeyondDouble(below + ".999999999"));
    EXPECT_FALSE(isBeyondDouble("0." + below + "e309"));
    EXPECT_TRUE(isBeyondDouble(firstBeyond + "0e-1"));
}

TEST(NumberToken, simpleNumbersAreConvertedExactly) {
    struct Case {
        const char* text;
        double value;
    };

    for (const auto& [text, value] : std::vector<Case>{{"0", 0.0},
                                                       {"40", 40.0},
                                                       {"72.5", 72.5},
                                                       {"0.1", 0.1},
                                                       {"-0.3", -0.3},
                                                       {"123456789.012345", 123456789.012345},
                                                       {"1e22", 1e22},
                                                       {"1e-22", 1e-22},
                                                       {"999999999999999", 999999999999999.0},
                                                       {"1e-400", 0.0},
                                                       {"1e-99999999999999999999", 0.0}}) {
        EXPECT_EQ(NumberToken::parse(text)->simpleDouble(), value) << text;
    }
    EXPECT_TRUE(std::signbit(*NumberToken::parse("-0")->simpleDouble()));
    EXPECT_TRUE(std::signbit(*NumberToken::parse("-1e-400")->simpleDouble()));
}

TEST(NumberToken, numbersThatOneOperationCannotRoundAreLeftToAnother) {
    for (const char* text : {"1e23", "1e-23", "1234567890123456", "0.1234567890123456", "5e-324", "2e-324"}) {
        EXPECT_EQ(NumberToken::parse(text)->simpleDouble(), std::nullopt) << text;
    }
}

TEST(NumberToken, theCanonicalTextStandsForTheSameNumberWithItsPointAfterTheFirstDigit) {
    struct Case {
        const char* text;
        const char* canonical;
    };

    for (const auto& [text, canonical] : std::vector<Case>{{"12345", "1.2345e4"},
                                                           {"-0.00120", "-1.20e-3"},
                                                           {"7", "7.0e0"},
                                                           {"7e00000000000000000000005", "7.0e5"},
                                                           {"0.1e-9", "1.0e-10"},
                                                           {"100e-2", "1.00e0"}}) {
        EXPECT_EQ(NumberToken::parse(text)->canonicalText(), canonical) << text;
    }
}

TEST(NumberToken, theCanonicalTextIsShortAndRoundsAlike) {
    const std::string zeros(5000, '0');
    EXPECT_EQ(NumberToken::parse("1" + zeros)->canonicalText().size(), std::string("1.e5000").size() + 799);
    EXPECT_TRUE(NumberToken::parse("1" + zeros)->canonicalText().starts_with("1." + std::string(799, '0') + "e"));
    EXPECT_TRUE(NumberToken::parse("1." + zeros + "5")->canonicalText().ends_with("01e0"));
}
