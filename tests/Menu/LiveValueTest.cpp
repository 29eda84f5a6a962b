#include "MenubarCore/Menu/Formatting.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

using namespace menubar;
using Kind = SettingControl::Kind;
using Array = JSONValue::Array;
using Object = JSONValue::Object;

namespace {

std::string live(const JSONValue& value, SettingControl control = Kind::number) {
    SettingSpec spec;
    spec.control = std::move(control);
    return Formatting::liveValue(value, spec);
}

} // namespace

TEST(LiveValue, aBoolIsOnOrOffWhateverTheControl) {
    EXPECT_EQ(live(true, Kind::toggle), "on");
    EXPECT_EQ(live(false, Kind::toggle), "off");
    EXPECT_EQ(live(true, Kind::percent), "on");
}

TEST(LiveValue, aNumberThatIsWholeHasNoDecimalPoint) {
    EXPECT_EQ(live(5), "5");
    EXPECT_EQ(live(30000), "30000");
    EXPECT_EQ(live(-5), "-5");
    EXPECT_EQ(live(0), "0");
    EXPECT_EQ(live(999999999999999.0), "999999999999999");
    EXPECT_EQ(live(-999999999999999.0), "-999999999999999");
}

TEST(LiveValue, anyOtherNumberIsItsShortestText) {
    EXPECT_EQ(live(2.5), "2.5");
    EXPECT_EQ(live(0.25), "0.25");
    EXPECT_EQ(live(0.1), "0.1");
    EXPECT_EQ(live(1e15), "1e+15");
    EXPECT_EQ(live(1.5e-7), "1.5e-07");
}

TEST(LiveValue, aPercentageIsRoundedHalvesAwayFromZero) {
    EXPECT_EQ(live(72.5, Kind::percent), "73%");
    EXPECT_EQ(live(72.4, Kind::percent), "72%");
    EXPECT_EQ(live(std::numeric_limits<double>::infinity(), Kind::percent), "--");
    EXPECT_EQ(live(std::nan(""), Kind::percent), "--");
}

TEST(LiveValue, aDurationIsInMilliseconds) {
    EXPECT_EQ(live(90000, Kind::duration), "1m");
    EXPECT_EQ(live(999, Kind::duration), "0s");
    EXPECT_EQ(live(1000, Kind::duration), "1s");
    EXPECT_EQ(live(3900000, Kind::duration), "1h 5m");
    EXPECT_EQ(live(-1, Kind::duration), "expired");
    EXPECT_EQ(live(1e300, Kind::duration), "--");
}

TEST(LiveValue, everyOtherControlShowsTheNumberItself) {
    for (const Kind kind :
         {Kind::unknown, Kind::toggle, Kind::number, Kind::text, Kind::list, Kind::enumeration, Kind::path}) {
        EXPECT_EQ(live(90000, kind), "90000");
    }
    EXPECT_EQ(live(90000, SettingControl::fromRawValue("slider")), "90000");
}

TEST(LiveValue, aTextStandsForItselfAndAnEmptyOneIsNamed) {
    EXPECT_EQ(live("90s", Kind::duration), "90s");
    EXPECT_EQ(live("a \"b\"\n"), "a \"b\"\n");
    EXPECT_EQ(live(""), "empty");
}

TEST(LiveValue, aListJoinsItsElementsWithStringsUnquoted) {
    EXPECT_EQ(live(Array{}), "none");
    EXPECT_EQ(live(Array{"a", "b c"}), "a, b c");
    EXPECT_EQ(live(Array{"", "x"}), ", x");
    EXPECT_EQ(live(Array{1, 2.5, true, nullptr, "x", Array{"y", 1}, Object{{"k", "v"}}}),
              R"(1, 2.5, true, null, x, ["y",1], {"k":"v"})");
    EXPECT_EQ(live(Array{50}, Kind::percent), "50") << "the control says how a single number reads";
}

TEST(LiveValue, anObjectIsCompactText) {
    EXPECT_EQ(live(Object{}), "{}");
    EXPECT_EQ(live(Object{{"b", 1}, {"a", Array{"/"}}}), R"({"a":["\/"],"b":1})");
}

TEST(LiveValue, nullIsNotSet) {
    EXPECT_EQ(live(nullptr), "not set");
}
