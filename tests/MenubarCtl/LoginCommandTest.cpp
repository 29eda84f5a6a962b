#include "MenubarCtl/Commands.h"

#include "tests/support/RecordingLoginItem.h"

#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::ctl;
using menubar::recording::RecordingLoginItem;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Outcome {
    ExitStatus status;
    std::string output;
    std::string errors;
};

Outcome outcomeOf(Command command, RecordingLoginItem& item) {
    CommandLine line;
    line.command = command;
    const Context context(std::move(line), {{"HOME", "/nowhere"}});
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const ExitStatus status = runLogin(context, item);
    return {
        .status = status,
        .output = testing::internal::GetCapturedStdout(),
        .errors = testing::internal::GetCapturedStderr(),
    };
}

} // namespace

TEST(LoginCommand, statusPrintsTheStateAndChangesNothing) {
    RecordingLoginItem item;
    for (const auto& [state, text] : {std::pair{LoginItemState::off, "off\n"}, std::pair{LoginItemState::on, "on\n"},
                                      std::pair{LoginItemState::awaitsApproval, "waiting for approval\n"}}) {
        item.current = state;
        const Outcome done = outcomeOf(Command::loginStatus, item);
        EXPECT_EQ(done.status, ExitStatus::done);
        EXPECT_EQ(done.output, text);
        EXPECT_EQ(done.errors, "");
    }
    EXPECT_THAT(item.calls, IsEmpty());
}

TEST(LoginCommand, onAndOffChangeTheStateAndPrintIt) {
    RecordingLoginItem item;
    EXPECT_EQ(outcomeOf(Command::loginOn, item).output, "on\n");
    EXPECT_EQ(item.current, LoginItemState::on);
    EXPECT_EQ(outcomeOf(Command::loginOff, item).output, "off\n");
    EXPECT_EQ(item.current, LoginItemState::off);
    EXPECT_THAT(item.calls, ElementsAre("on", "off"));
}

TEST(LoginCommand, onFailsUntilThePersonHasAllowedIt) {
    RecordingLoginItem item;
    item.needsApproval = true;
    const Outcome done = outcomeOf(Command::loginOn, item);
    EXPECT_EQ(done.status, ExitStatus::failed);
    EXPECT_EQ(done.output, "");
    EXPECT_EQ(done.errors,
              "ostrel-menubarctl: macOS waits for your approval: System Settings > General > Login Items\n");
}

TEST(LoginCommand, whatTheSystemObjectsToIsSaidAndFails) {
    RecordingLoginItem item;
    item.error = LoginItemError{"Operation not permitted"};
    for (const Command command : {Command::loginOn, Command::loginOff}) {
        const Outcome done = outcomeOf(command, item);
        EXPECT_EQ(done.status, ExitStatus::failed);
        EXPECT_EQ(done.output, "");
        EXPECT_EQ(done.errors, "ostrel-menubarctl: Operation not permitted\n");
    }
}
