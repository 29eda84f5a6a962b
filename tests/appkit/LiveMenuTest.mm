#include "MenubarApp/AppKit/AppKitMainLoop.h"
#include "MenubarApp/AppKit/AppKitStatusItem.h"
#include "MenubarApp/StatusMenu/StatusMenuController.h"

#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/MenuDriver.h"
#include "tests/support/RecordingShell.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

using Lines = std::vector<std::string>;
constexpr unichar escapeKey = 0x1B;

/// The controller on the real item and main loop, with files, clock and commands that the test plays.
class LiveMenu : public ::testing::Test {
protected:
    static constexpr const char* statusPath = "/home/ann/status.json";

    LiveMenu() {
        m_clock.time = Date(std::chrono::seconds(1741096980)); // 2025-03-04 14:03:00 UTC
        m_controller =
            StatusMenuController::create(statusPath, {}, "/home/ann",
                                         {.mainLoop = m_loop,
                                          .statusItem = m_item,
                                          .workspace = m_workspace,
                                          .defaults = m_defaults,
                                          .fileManager = m_files,
                                          .clock = m_clock,
                                          .commands = m_commands,
                                          .settings = m_settings,
                                          .log = [this](std::string_view line) { m_log.emplace_back(line); }});
        m_item.setEvents(m_controller);
    }

    void writeSession(const std::string& name, const std::string& pct) {
        m_files.files[statusPath] = R"({"at":"2025-03-04T14:02:57Z","sessions":[{"dirName":")" + name +
                                    R"(","contextPct":)" + pct +
                                    R"(,"level":"ok","workspaceId":"w1","surfaceId":"f1"}]})";
    }

    [[nodiscard]] std::string title() const {
        return toString([[[m_item.nativeItem() button] attributedTitle] string]);
    }

    /// The first title of the open menu that begins so; empty when none does.
    static std::string openTitle(std::string_view beginning) {
        for (const std::string& title : driver::openTitles()) {
            if (title.starts_with(beginning)) {
                return title;
            }
        }
        return "";
    }

    /// Of the closed menu, as who looks at it finds it.
    NSMenuItem* itemTitled(const std::string& title) {
        m_controller->menuNeedsUpdate();
        return driver::itemTitled(m_item.nativeMenu(), title);
    }

    AppKitMainLoop m_loop;
    AppKitStatusItem m_item;
    recording::FakeWorkspace m_workspace;
    recording::FakeDefaults m_defaults;
    recording::FakeFileManager m_files;
    recording::FakeClock m_clock;
    recording::FakeCommands m_commands;
    recording::FakeSettingsWindow m_settings;
    Lines m_log;
    std::shared_ptr<StatusMenuController> m_controller;
};

TEST_F(LiveMenu, openingTheMenuReadsTheFileAgainBeforeAnythingIsDrawn) {
    writeSession("acme", "41");
    m_controller->start();
    EXPECT_EQ(title(), " 41%");
    writeSession("beta", "57");
    const int reads = m_files.reads;
    std::string session;
    EXPECT_FALSE(driver::openMenu(m_item, {[&] { session = openTitle("beta"); }, driver::key(escapeKey)}));
    EXPECT_EQ(m_files.reads, reads + 1);
    EXPECT_NE(session, "");
    EXPECT_EQ(title(), " 57%");
}

TEST_F(LiveMenu, clickingASessionFocusesItsTerminalOnce) {
    writeSession("acme", "41");
    m_controller->start();
    EXPECT_FALSE(driver::openMenu(m_item, {[] { driver::click(openTitle("acme"))(); }}));
    EXPECT_EQ(m_commands.log, Lines{"focus w1 f1"});
}

TEST_F(LiveMenu, aCommandThatEndsWhileTheMenuIsOpenLeavesTheRowThatMayBeHighlighted) {
    writeSession("acme", "41");
    m_controller->start();
    EXPECT_FALSE(driver::openMenu(m_item, {driver::click("Refresh")}));
    m_controller->perform(MenuAction::focusSession, 1, {});
    NSMenuItem* quit = nil;
    NSMenuItem* later = nil;
    std::string state;
    EXPECT_FALSE(driver::openMenu(m_item, {[&] {
                                               quit = driver::itemTitled(m_item.nativeMenu(), "Quit");
                                               m_files.files.clear();
                                               m_commands.complete();
                                           },
                                           driver::wait(), driver::wait(),
                                           [&] {
                                               state = driver::openTitles().front();
                                               later = driver::itemTitled(m_item.nativeMenu(), "Quit");
                                           },
                                           driver::click("Quit")}));
    EXPECT_EQ(state, "Daemon not running");
    EXPECT_NE(quit, nil);
    EXPECT_EQ(later, quit);
    EXPECT_EQ(m_workspace.log, Lines{"terminate"});
}

TEST_F(LiveMenu, theCheckMarkOfIconOnlyFollowsTheClick) {
    writeSession("acme", "41");
    m_controller->start();
    EXPECT_EQ([itemTitled("Icon only") state], NSControlStateValueOff);
    EXPECT_FALSE(driver::openMenu(m_item, {driver::click("Icon only")}));
    EXPECT_EQ(m_defaults.values["compact"], true);
    EXPECT_EQ([itemTitled("Icon only") state], NSControlStateValueOn);
    EXPECT_EQ(title(), "");
}

} // namespace
} // namespace menubar
