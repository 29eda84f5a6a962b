#include "MenubarCore/Menu/CompactSetting.h"

#include <string>

#include <gtest/gtest.h>

using namespace menubar;
using Source = CompactSetting::Source;

namespace {

Environment withVariable(const char* value) {
    return {{"OSTREL_MENUBAR_COMPACT", value}, {"COMPACT", "on"}};
}

} // namespace

TEST(CompactSetting, fourWordsSayYesAndFourSayNoInAnyCase) {
    for (const char* const text : {"1", "true", "yes", "on", "TRUE", "Yes", "oN"}) {
        EXPECT_EQ(CompactSetting::parse(text), true) << text;
    }
    for (const char* const text : {"0", "false", "no", "off", "FALSE", "No", "oFF"}) {
        EXPECT_EQ(CompactSetting::parse(text), false) << text;
    }
}

TEST(CompactSetting, whiteSpaceAndLineBreaksAroundTheWordAreIgnored) {
    EXPECT_EQ(CompactSetting::parse("  YES\n"), true);
    EXPECT_EQ(CompactSetting::parse("\t\r\noff\u00A0\u2003"), false);
}

TEST(CompactSetting, everyOtherTextSaysNothing) {
    for (const char* const text :
         {"", " ", "2", "01", "y", "n", "t", "f", "maybe", "yes please", "o n", "ye\u017F", "-1"}) {
        EXPECT_EQ(CompactSetting::parse(text), std::nullopt) << text;
    }
}

TEST(CompactSetting, theEnvironmentWinsOverTheStoredDefaultAndLocksIt) {
    const CompactSetting off = CompactSetting::resolve(withVariable("off"), true);
    EXPECT_EQ(off, (CompactSetting{false, Source::environment}));
    EXPECT_TRUE(off.isLockedByEnvironment());
    EXPECT_EQ(CompactSetting::resolve(withVariable("1"), std::nullopt), (CompactSetting{true, Source::environment}));
}

TEST(CompactSetting, anEnvironmentValueThatDoesNotParseCountsAsAbsent) {
    EXPECT_EQ(CompactSetting::resolve(withVariable("maybe"), true), (CompactSetting{true, Source::defaults}));
    EXPECT_EQ(CompactSetting::resolve(withVariable(""), false), (CompactSetting{false, Source::defaults}));
    EXPECT_EQ(CompactSetting::resolve(withVariable("maybe"), std::nullopt), (CompactSetting{false, Source::builtIn}));
}

TEST(CompactSetting, withoutAVariableTheStoredDefaultDecidesAndIsNotLocked) {
    EXPECT_EQ(CompactSetting::resolve({}, true), (CompactSetting{true, Source::defaults}));
    EXPECT_EQ(CompactSetting::resolve({}, false), (CompactSetting{false, Source::defaults}));
    EXPECT_FALSE(CompactSetting::resolve({}, true).isLockedByEnvironment());
}

TEST(CompactSetting, withNothingSetItIsOff) {
    EXPECT_EQ(CompactSetting::resolve({}, std::nullopt), (CompactSetting{false, Source::builtIn}));
    EXPECT_FALSE(CompactSetting::resolve({}, std::nullopt).isLockedByEnvironment());
}

TEST(CompactSetting, theKeysAndTheSourcesHaveTheirNames) {
    EXPECT_EQ(CompactSetting::environmentKey, "OSTREL_MENUBAR_COMPACT");
    EXPECT_EQ(CompactSetting::defaultsKey, "compact");
    EXPECT_EQ(rawText(Source::environment), "environment");
    EXPECT_EQ(rawText(Source::defaults), "defaults");
    EXPECT_EQ(rawText(Source::builtIn), "builtIn");
}
