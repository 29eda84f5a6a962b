// The settings window of the built app, on a real display, with a real mouse and keyboard: what becomes of the config
// file, and of the daemon.

#include "MenubarCore/Daemon/LaunchAgentLabel.h"

#include "tests/e2e/Desktop.h"
#include "tests/support/PropertyLists.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace menubar;
using menubar::e2e::Desktop;
using menubar::e2e::eventually;
using menubar::e2e::ScratchHome;
using menubar::testing_support::bytesOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const char* const savedConfig = "{\n  \"warn-context\" : 45\n}\n";

/// The app with its settings window, on the stand-in daemon, whose validator may take its time.
class SettingsDesktop : public testing::Test {
protected:
    void installDaemon() const {
        desktop.home.write("Library/LaunchAgents/" + std::string(LaunchAgentLabel) + ".plist",
                           testing_support::launchAgentPlist({DEMO_PROGRAM, "watch", "--interval-ms", "600000"}));
    }

    /// Ends the daemon that the app has started, once it runs: it would outlive the test.
    void endDaemon() const {
        ASSERT_TRUE(eventually([&] { return std::filesystem::exists(desktop.home.statusFile()); }));
        const std::string service = "gui/" + std::to_string(::getuid()) + "/" + std::string(LaunchAgentLabel);
        EXPECT_EQ(ScratchHome::run({.program = DEMO_TOOLS "/launchctl",
                                    .arguments = {"bootout", service},
                                    .environment = desktop.home.environment})
                      .status,
                  0);
    }

    /// Validation waits until `letValidate`, and tells that it has begun.
    void holdValidator() const {
        const std::string script = desktop.home.write(
            "ostrel", "#!/bin/sh\nif [ \"$2\" = validate ]; then\n  : >\"$HOME/validating\"\n"
                      "  while [ ! -e \"$HOME/go\" ]; do sleep 0.05; done\nfi\nexec " DEMO_PROGRAM " \"$@\"\n");
        ::chmod(script.c_str(), 0755);
    }

    void letValidate() const { desktop.home.write("go", ""); }

    /// Starts the app and takes "Settings..." from its menu.
    void open() {
        const std::string held = desktop.home / "ostrel";
        desktop.home.environment["OSTREL_CLI"] = std::filesystem::exists(held) ? held : DEMO_PROGRAM;
        desktop.start();
        desktop.choose("Down", 2); // "Refresh", "Settings..."
        ASSERT_TRUE(eventually([] { return Desktop::settingsWindow().has_value(); }));
    }

    /// Waits for the form, clicks into its first field, replaces what that holds, and clicks Save.
    void setTheFirstFieldAndSave() const {
        constexpr int x = 100; // in the field, behind its text
        constexpr int y = 134;
        constexpr int edge = 10; // white is its edge
        ASSERT_TRUE(eventually([&] {
            const auto window = Desktop::settingsWindow();
            return window && Desktop::isWhite(window->x + x, window->y + y - edge);
        }));
        const auto window = Desktop::settingsWindow();
        ASSERT_TRUE(window);
        desktop.click(window->x + x, window->y + y);
        desktop.press("alt+a");
        desktop.type("45");
        // From the lower right corner, where it stays whatever the form holds.
        desktop.click(window->x + window->width - 50, window->y + window->height - 32);
    }

    [[nodiscard]] std::string config() const { return bytesOf(desktop.home / ".config/ostrel/config.json"); }

    Desktop desktop;
};

} // namespace

TEST_F(SettingsDesktop, aSettingIsTypedAndSavedAndTheDaemonRestarted) {
    installDaemon();
    open();
    setTheFirstFieldAndSave();
    ASSERT_TRUE(desktop.says("save outcome: saved\n"));
    EXPECT_EQ(config(), savedConfig);
    EXPECT_THAT(desktop.calls(), IsEmpty());
    desktop.press("Return"); // "Restart Daemon"
    ASSERT_TRUE(desktop.waitForCalls(1));
    EXPECT_THAT(desktop.calls().front(), HasSubstr("launchctl <kickstart> <-k> "));
    desktop.press("Escape");
    EXPECT_TRUE(eventually([] { return !Desktop::settingsWindow(); }));
    const std::string lines = desktop.stop();
    EXPECT_THAT(lines, HasSubstr("\nostrel-menubar: settings saved to " + desktop.home.path() +
                                 "/.config/ostrel/config.json\nostrel-menubar: save outcome: saved\n"));
    endDaemon();
}

TEST_F(SettingsDesktop, theCloseBoxClosesAndTheMenuOpensItAnew) {
    open();
    const auto window = Desktop::settingsWindow();
    ASSERT_TRUE(window);
    desktop.click(window->x + window->width - 17, window->y + 15);
    ASSERT_TRUE(eventually([] { return !Desktop::settingsWindow(); }));
    desktop.choose("Down", 2);
    EXPECT_TRUE(eventually([] { return Desktop::settingsWindow().has_value(); }));
    EXPECT_THAT(desktop.stop(), HasSubstr("config schema\n"));
}

TEST_F(SettingsDesktop, whileTheValidatorTakesItsTimeTheAppPolls) {
    holdValidator();
    open();
    setTheFirstFieldAndSave();
    ASSERT_TRUE(eventually([this] { return std::filesystem::exists(desktop.home / "validating"); }));
    desktop.openMenu(); // it answers
    desktop.press("Escape");
    EXPECT_TRUE(eventually([this] { return !desktop.menu(); }));
    const auto before = desktop.strip();
    ASSERT_TRUE(before);
    // Another title.
    desktop.home.writeStatus(R"({"at":"2025-03-04T10:15:30Z","sessions":[
        {"sessionId":"id-1","dirName":"api","contextPct":100}]})");
    EXPECT_TRUE(eventually([&] {
        const auto now = desktop.strip();
        return now && now->width != before->width;
    }));
    EXPECT_EQ(config(), "");
    letValidate();
    EXPECT_TRUE(eventually([this] { return config() == savedConfig; }));
}

TEST_F(SettingsDesktop, aSaveThatRunsEndsWholeBeforeTheAppDoes) {
    holdValidator();
    open();
    setTheFirstFieldAndSave();
    ASSERT_TRUE(eventually([this] { return std::filesystem::exists(desktop.home / "validating"); }));
    desktop.requestEnd();
    letValidate();
    desktop.waitForEnd();
    EXPECT_EQ(config(), savedConfig);
    EXPECT_THAT(desktop.errors(), HasSubstr("ostrel-menubar: save outcome: saved\n"));
}
