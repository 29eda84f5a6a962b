#include "MenubarApp/Commands/PendingCommands.h"

#include "tests/support/RecordingShell.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

struct Fixture {
    recording::FakeMainLoop mainLoop;
    std::vector<std::string> lines;
    int completions = 0;
    PendingCommands commands{mainLoop, [this](std::string_view line) { lines.emplace_back(line); }};

    std::function<void()> completion() {
        return [this] { ++completions; };
    }
};

TEST(PendingCommands, everyCallSaysInOneLineThatItIsNotAvailable) {
    Fixture f;
    f.commands.focus("w1", "s1", f.completion());
    f.commands.notify("icon hidden", "body", f.completion());
    f.commands.startDaemon(f.completion());
    f.commands.stopDaemon(f.completion());
    EXPECT_EQ(f.lines, (std::vector<std::string>{
                           "focusing workspace w1 is not available yet",
                           "the notification \"icon hidden\" is not available yet",
                           "starting the daemon is not available yet",
                           "stopping the daemon is not available yet",
                       }));
}

TEST(PendingCommands, completesOnceAndNeverBeforeTheCallReturned) {
    Fixture f;
    f.commands.startDaemon(f.completion());
    EXPECT_EQ(f.completions, 0);
    f.mainLoop.drain();
    f.mainLoop.drain();
    EXPECT_EQ(f.completions, 1);
}

} // namespace
} // namespace menubar
