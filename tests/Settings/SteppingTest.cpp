#include "MenubarApp/Settings/Stepping.h"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

using Kind = SettingControl::Kind;

SettingSpec bounded(Kind kind, std::optional<double> min, std::optional<double> max) {
    return {.name = "a", .control = kind, .min = min, .max = max};
}

TEST(Stepping, aNumberStepsByOneWithinItsBounds) {
    struct Case {
        double value;
        std::optional<double> min;
        std::optional<double> max;
        double up;
        double down;
    };

    const std::vector<Case> cases = {
        {5, {}, {}, 6, 4},  {0, {}, {}, 1, -1},    {0.5, {}, {}, 1.5, -0.5}, {9, 0, 10, 10, 8},
        {10, 0, 10, 10, 9}, {9.5, 0, 10, 10, 8.5}, {0, 0, 10, 1, 0},         {0.5, 0, 10, 1.5, 0},
        {5, 5, 5, 5, 5},    {12, 0, 10, 12, 10}, // outside: back to the bound, never further away
        {-3, 0, 10, 0, -3}, {7, 10, 0, 10, 7},   // bounds that exclude each other
    };
    for (const Case& c : cases) {
        const SettingSpec spec = bounded(Kind::number, c.min, c.max);
        EXPECT_EQ(steppedNumber(c.value, spec, StepDirection::up), c.up) << c.value;
        EXPECT_EQ(steppedNumber(c.value, spec, StepDirection::down), c.down) << c.value;
    }
}

TEST(Stepping, aDurationStepsItsLeadingNumberAndKeepsTheRest) {
    struct Case {
        std::string text;
        std::optional<std::string> up;
        std::optional<std::string> down;
    };

    const std::vector<Case> cases = {
        {"10m", "11m", "9m"},
        {"1h 30m", "2h 30m", "0h 30m"},
        {"9s", "10s", "8s"},
        {"30", "31", "29"},
        {"0s", "1s", "0s"}, // never negative
        {"007s", "8s", "6s"},
        {"10 m", "11 m", "9 m"},
        {"1.5h", "2.5h", "0.5h"},
        {"", {}, {}},
        {"m", {}, {}},
        {"-5m", {}, {}},
        {" 5m", {}, {}},
        {"99999999999999s", "100000000000000s", "99999999999998s"},
        {"100000000000000s", {}, {}}, // more digits than are stepped
    };
    for (const Case& c : cases) {
        const SettingSpec spec = bounded(Kind::duration, {}, {});
        EXPECT_EQ(steppedDuration(c.text, spec, StepDirection::up), c.up) << c.text;
        EXPECT_EQ(steppedDuration(c.text, spec, StepDirection::down), c.down) << c.text;
    }
}

TEST(Stepping, aDurationKeepsWithinTheBoundsOfItsSetting) {
    const SettingSpec spec = bounded(Kind::duration, 5, 10);
    EXPECT_EQ(steppedDuration("10m", spec, StepDirection::up), "10m");
    EXPECT_EQ(steppedDuration("5m", spec, StepDirection::down), "5m");
    EXPECT_EQ(steppedDuration("0s", bounded(Kind::duration, -5, {}), StepDirection::down), "0s");
}

TEST(Stepping, knowsWhatADurationBeginsWith) {
    EXPECT_EQ(leadingNumber("10m"), 10);
    EXPECT_EQ(leadingNumber("0"), 0);
    EXPECT_EQ(leadingNumber(""), std::nullopt);
    EXPECT_EQ(leadingNumber("soon"), std::nullopt);
}

} // namespace
} // namespace menubar
