#include "MenubarApp/Platform/UserDefaults.h"

#include <gtest/gtest.h>

using namespace menubar;

TEST(UserDefaults, areInTheAppsDomainUnlessTheVariableNamesAnother) {
    EXPECT_EQ(UserDefaults::domain({}), "ostrel-menubar");
    EXPECT_EQ(UserDefaults::domain({{"OSTREL_MENUBAR_DEFAULTS_DOMAIN", ""}}), "ostrel-menubar");
    EXPECT_EQ(UserDefaults::domain({{"OSTREL_MENUBAR_DEFAULTS_DOMAIN", "some.tests"}}), "some.tests");
}
