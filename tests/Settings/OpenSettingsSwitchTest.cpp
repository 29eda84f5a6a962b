#include "MenubarApp/Settings/OpenSettingsSwitch.h"

#include <gtest/gtest.h>

namespace menubar {
namespace {

TEST(OpenSettingsSwitch, isOnForExactlyOne) {
    EXPECT_TRUE(OpenSettingsSwitch::isOn({{"OSTREL_MENUBAR_OPEN_SETTINGS", "1"}}));
}

TEST(OpenSettingsSwitch, isOffForEveryOtherValueAndWhenAbsent) {
    for (const char* value : {"0", "true", "yes", "", "11", " 1", "1 "}) {
        EXPECT_FALSE(OpenSettingsSwitch::isOn({{"OSTREL_MENUBAR_OPEN_SETTINGS", value}})) << '"' << value << '"';
    }
    EXPECT_FALSE(OpenSettingsSwitch::isOn({}));
    EXPECT_FALSE(OpenSettingsSwitch::isOn({{"OSTREL_MENUBAR_OPEN_SETTING", "1"}}));
}

} // namespace
} // namespace menubar
