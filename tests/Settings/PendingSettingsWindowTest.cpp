#include "MenubarApp/Settings/PendingSettingsWindow.h"

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

} // namespace
} // namespace menubar
