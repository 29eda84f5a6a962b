#include "MenubarApp/Platform/ZoneDatabase.h"

#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryDirectory.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace menubar;
using menubar::testing_support::ScopedVariable;
using menubar::testing_support::TemporaryDirectory;

TEST(ZoneDatabase, holdsZonesAndLinksByTheirNames) {
    for (const char* const name : {"UTC", "Etc/UTC", "Etc/GMT+3", "Asia/Kathmandu", "Asia/Katmandu", "EST5EDT",
                                   "America/Argentina/Buenos_Aires"}) {
        EXPECT_TRUE(ZoneDatabase::holds(name)) << name;
    }
}

TEST(ZoneDatabase, noNameLeadsOutOfItOrToWhatIsNoZone) {
    for (const char* const name : {"",
                                   " ",
                                   ".",
                                   "..",
                                   "/",
                                   "../../../etc/localtime",
                                   "/etc/localtime",
                                   "/usr/share/zoneinfo/UTC",
                                   "Europe/../UTC",
                                   "Europe//Berlin",
                                   "Europe",
                                   "Europe/",
                                   "Europe/Berlin/",
                                   "Europe/Berlin/Mitte",
                                   "Europe/Berlin ",
                                   "./UTC",
                                   ":UTC",
                                   "posix/Europe/Berlin",
                                   "right/Europe/Berlin",
                                   "localtime",
                                   "posixrules",
                                   "tzdata.zi",
                                   "zone.tab",
                                   "europe/berlin",
                                   "EUROPE/Berlin",
                                   "utc",
                                   "Nowhere/Land",
                                   "JST-9",
                                   "CET-1CEST"}) {
        EXPECT_FALSE(ZoneDatabase::holds(name)) << name;
    }
    EXPECT_FALSE(ZoneDatabase::holds(std::string_view("UTC\0", 4)));
    EXPECT_FALSE(ZoneDatabase::holds("Europe/" + std::string(10000, 'x')));
}

TEST(ZoneDatabase, liesWhereTheVariableSays) {
    const TemporaryDirectory directory;
    std::filesystem::create_directory(directory / "Some");
    std::filesystem::copy_file(ZoneDatabase::directory() + "/UTC", directory / "Some/Where");
    std::filesystem::create_symlink("Some", directory / "Linked");
    directory.write("Text", "no zone");
    ASSERT_EQ(::mkfifo((directory / "Fifo").c_str(), 0600), 0);
    const ScopedVariable variable("TZDIR", directory.path());
    EXPECT_TRUE(ZoneDatabase::holds("Some/Where"));
    EXPECT_TRUE(ZoneDatabase::holds("Linked/Where"));
    for (const char* const name : {"UTC", "Some", "some/where", "Text", "Fifo", "Fifo/Where"}) {
        EXPECT_FALSE(ZoneDatabase::holds(name)) << name;
    }
}

TEST(ZoneDatabase, withoutOneThereIsNoZone) {
    const TemporaryDirectory directory;
    const ScopedVariable variable("TZDIR", directory / "none");
    EXPECT_FALSE(ZoneDatabase::holds("UTC"));
}

TEST(ZoneDatabase, anEmptyVariableCountsAsNone) {
    const ScopedVariable variable("TZDIR", "");
    EXPECT_TRUE(ZoneDatabase::holds("UTC"));
}
