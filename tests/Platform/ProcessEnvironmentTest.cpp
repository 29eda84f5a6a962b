#include "MenubarApp/Platform/ProcessEnvironment.h"

#include <cstdlib>
#include <utility>

#include <gtest/gtest.h>

using namespace menubar;

extern "C" char** environ; // not every system's headers declare it

TEST(ProcessEnvironment, holdsEachVariableWithItsWholeValue) {
    ASSERT_EQ(::setenv("MENUBAR_TEST_VARIABLE", "a=b c", 1), 0);
    ASSERT_EQ(::setenv("MENUBAR_TEST_EMPTY", "", 1), 0);
    const Environment environment = processEnvironment();
    EXPECT_EQ(environment.at("MENUBAR_TEST_VARIABLE"), "a=b c");
    EXPECT_EQ(environment.at("MENUBAR_TEST_EMPTY"), "");
    ASSERT_EQ(::unsetenv("MENUBAR_TEST_VARIABLE"), 0);
    EXPECT_FALSE(processEnvironment().contains("MENUBAR_TEST_VARIABLE"));
}

TEST(ProcessEnvironment, leavesOutAnEntryWithoutAName) {
    char nameless[] = "=C:=x";
    char named[] = "MENUBAR_TEST_VARIABLE=y";
    char* entries[] = {nameless, named, nullptr};
    char** const before = std::exchange(environ, entries);
    const Environment environment = processEnvironment();
    environ = before;
    EXPECT_EQ(environment, (Environment{{"MENUBAR_TEST_VARIABLE", "y"}}));
}

TEST(ProcessEnvironment, theHomeDirectoryIsTheVariableAsItStands) {
    EXPECT_EQ(homeDirectory({{"HOME", "/home/ann/"}}), "/home/ann/");
}

TEST(ProcessEnvironment, withoutTheVariableTheAccountsHomeIsUsed) {
    const std::string home = homeDirectory({});
    EXPECT_TRUE(home.starts_with('/')) << home;
    EXPECT_EQ(homeDirectory({{"HOME", ""}}), home);
}
