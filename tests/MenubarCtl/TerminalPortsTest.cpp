#include "MenubarApp/Platform/PosixFileManager.h"
#include "MenubarCtl/OpenPlan.h"
#include "MenubarCtl/ThisSystem.h"

#include "tests/support/TemporaryDirectory.h"

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::ctl;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Plans {
    Environment environment{{"PATH", "/bin:/usr/bin"}};
    std::set<std::string> programs{"/bin/less", "/usr/bin/xdg-open"};

    [[nodiscard]] OpenPlan of(const std::string& path, bool isFolder = false) const {
        return openPlan(path, isFolder, environment,
                        [this](const std::string& program) { return programs.contains(program); });
    }
};

} // namespace

TEST(OpenPlan, thePagerReadsAFileOnTheTerminal) {
    Plans plans;
    plans.environment["PAGER"] = " less  -R ";
    plans.environment["DISPLAY"] = ":0";
    const OpenPlan plan = plans.of("/h.md");
    EXPECT_THAT(plan.words, ElementsAre("less", "-R", "/h.md"));
    EXPECT_TRUE(plan.takesTerminal);
    EXPECT_THAT(plans.of("/logs", true).words, ElementsAre("/usr/bin/xdg-open", "/logs"));
}

TEST(OpenPlan, withoutAPagerTheOpenerTakesItWhereItHasADesktop) {
    Plans plans;
    plans.environment["WAYLAND_DISPLAY"] = "wayland-0";
    EXPECT_THAT(plans.of("/h.md").words, ElementsAre("/usr/bin/xdg-open", "/h.md"));
    EXPECT_FALSE(plans.of("/h.md").takesTerminal);
    plans.programs.insert("/usr/bin/open");
    EXPECT_THAT(plans.of("/h.md").words, ElementsAre("/usr/bin/open", "/h.md"));
}

TEST(OpenPlan, whereNothingCanBeOpenedLessReadsIt) {
    Plans plans;
    EXPECT_THAT(plans.of("/h.md").words, ElementsAre("/bin/less", "/h.md"));
    EXPECT_TRUE(plans.of("/h.md").takesTerminal);
    EXPECT_THAT(plans.of("/logs", true).words, IsEmpty());
    plans.programs = {"/usr/bin/open", "/bin/less"};
    plans.environment["SSH_CONNECTION"] = "192.0.2.1 50000 192.0.2.2 22";
    EXPECT_THAT(plans.of("/h.md").words, ElementsAre("/bin/less", "/h.md"));
    plans.programs.clear();
    EXPECT_THAT(plans.of("/h.md").words, IsEmpty());
}

TEST(OpenPlan, noPathIsTakenForAnOption) {
    Plans plans;
    plans.environment["PAGER"] = "less";
    EXPECT_THAT(plans.of("+!reboot").words, ElementsAre("less", "./+!reboot"));
    EXPECT_THAT(plans.of("-o").words, ElementsAre("less", "./-o"));
}

#if !defined(__APPLE__)
TEST(StoredDefaults, whatIsStoredIsReadAgainAndTheRestOfTheFileSurvives) {
    const testing_support::TemporaryDirectory home;
    const Environment environment{{"HOME", home.path()}};
    const PosixFileManager files;
    EXPECT_EQ(storedBool("compact", environment, files), std::nullopt);
    ASSERT_TRUE(storeBool("other", false, environment, files));
    ASSERT_TRUE(storeBool("compact", true, environment, files));
    EXPECT_EQ(storedBool("compact", environment, files), true);
    ASSERT_TRUE(storeBool("compact", false, environment, files));
    EXPECT_EQ(storedBool("compact", environment, files), false);
    EXPECT_EQ(storedBool("other", environment, files), false);
}

TEST(StoredDefaults, aFileThatCannotBeReadIsLeftAlone) {
    const testing_support::TemporaryDirectory home;
    std::filesystem::create_directories(home / "GNUstep/Defaults");
    const std::string path = home.write("GNUstep/Defaults/ostrel-menubar.plist", "no property list");
    const PosixFileManager files;
    const auto stored = storeBool("compact", true, {{"HOME", home.path()}}, files);
    ASSERT_FALSE(stored);
    EXPECT_EQ(stored.error(), "the preferences in " + path + " cannot be read");
    EXPECT_EQ(files.contents(path).value(), "no property list");
}
#endif
