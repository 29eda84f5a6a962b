#include "MenubarApp/Settings/PendingSettingsWindow.h"

#include "tests/support/SettingsHarness.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

TEST(PendingSettingsWindow, saysInOneLineThatItCannotBeShown) {
    std::vector<std::string> lines;
    PendingSettingsWindow window([&](std::string_view line) { lines.emplace_back(line); });
    window.update(nullptr, DaemonState{});
    EXPECT_TRUE(lines.empty());
    window.show();
    EXPECT_EQ(lines, std::vector<std::string>{"the settings window is not available yet"});
}

TEST(PendingSettingsWindow, passesWhatAPollFoundOnToItsModel) {
    recording::SettingsHarness harness;
    harness.create();
    PendingSettingsWindow window([](std::string_view) {}, harness.model);
    const StatusFile status{.configFile = ConfigFileStatus{.changedSinceLoad = true}};
    window.update(&status, DaemonState::Running{});
    EXPECT_TRUE(harness.model->restartNeeded());
}

} // namespace
} // namespace menubar
