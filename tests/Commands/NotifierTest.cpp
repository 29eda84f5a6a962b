#include "MenubarApp/Commands/Notifier.h"

#include "tests/support/StandIns.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::testing_support;
using testing::ElementsAre;

namespace {

/// What no shell and no script may see as anything but text.
const std::string title = R"(It's "hidden" \ $HOME `x`)";
const std::string body = "two\nlines; end tell";

struct NotifierTest : testing::Test {
    void notify() {
        Notifier::notify(standIns.mainLoop, standIns.context, title, body,
                         [this](const CommandResult& result) { results.push_back(result); });
        EXPECT_TRUE(results.empty());
        standIns.mainLoop.drain();
    }

    StandIns standIns;
    std::vector<CommandResult> results;
};

} // namespace

TEST_F(NotifierTest, goesThroughCmux) {
    notify();
    EXPECT_THAT(standIns.calls(), ElementsAre("quiet cmux <notify> <--title> <" + title + "> <--body> <" + body + ">"));
    EXPECT_THAT(results, ElementsAre(CommandResult{}));
}

TEST_F(NotifierTest, goesThroughTheScriptRunnerWithoutCmux) {
    standIns.context.environment.erase("PATH");
    notify();
    EXPECT_THAT(standIns.calls(),
                ElementsAre("osascript <-e> <on run argv> <-e> <display notification (item 2 of argv) with title "
                            "(item 1 of argv)> <-e> <end run> <" +
                            title + "> <" + body + ">"));
    EXPECT_THAT(results, ElementsAre(CommandResult{}));
    ASSERT_EQ(standIns.lines.size(), 2U);
    EXPECT_EQ(standIns.lines[0], "cmux not found in [] or PATH; using osascript for the notification");
}

TEST_F(NotifierTest, reportsTheFailureOfTheOneCommandAndTriesNoOther) {
    const ScopedVariable fail("OSTREL_DEMO_FAIL", "notify");
    notify();
    EXPECT_EQ(standIns.calls().size(), 1U);
    EXPECT_THAT(results, ElementsAre(CommandResult{.status = 1, .stdout_ = "", .stderr_ = "cmux: told to fail"}));
}

TEST_F(NotifierTest, reportsAScriptRunnerThatIsNotThere) {
    standIns.context.environment.clear();
    standIns.context.tools.osascript = "/no/such/osascript";
    notify();
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(results[0].status, -1);
}
