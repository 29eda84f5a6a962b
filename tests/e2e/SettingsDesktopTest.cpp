// The settings window of the built app, on a real display, with a real mouse and keyboard: what becomes of the config
// file, and of the daemon.

#include "MenubarCore/Daemon/LaunchAgentLabel.h"

#include "tests/e2e/Desktop.h"
#include "tests/support/PropertyLists.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace menubar;
using namespace std::chrono_literals;
using menubar::e2e::Desktop;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const char* const savedConfig = "{\n  \"warn-context\" : 45\n}\n";

std::string contentsOf(const std::string& path) {
    std::ifstream in(path);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// The app with its settings window, on the stand-in daemon, whose validator may take its time.
class SettingsDesktop : public testing::Test {
protected:
    void installDaemon() const {
        desktop.home.write("Library/LaunchAgents/" + std::string(LaunchAgentLabel) + ".plist",
                           testing_support::launchAgentPlist({DEMO_PROGRAM, "watch", "--interval-ms", "100"}));
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
        ASSERT_TRUE(Desktop::eventually([] { return Desktop::settingsWindow().has_value(); }));
    }

    /// Clicks into the first field, replaces what it holds, and clicks Save; again while the window is still loading.
    void setTheFirstFieldAndSave(const std::function<bool()>& isSaved) const {
        for (int attempt = 0; attempt < 20 && !isSaved(); ++attempt) {
            const auto window = Desktop::settingsWindow(); // where it is now: a new window may yet find its place
            ASSERT_TRUE(window);
            desktop.click(window->x + 72, window->y + 134);
            desktop.press("alt+a");
            desktop.type("45");
            // From the lower right corner, where it stays whatever the form holds.
            desktop.click(window->x + window->width - 50, window->y + window->height - 32);
            (void)Desktop::eventually(isSaved, 1s);
        }
        ASSERT_TRUE(isSaved());
    }

    [[nodiscard]] std::string config() const { return contentsOf(desktop.home / ".config/ostrel/config.json"); }

    Desktop desktop;
};

} // namespace

TEST_F(SettingsDesktop, aSettingIsTypedAndSavedAndTheDaemonRestarted) {
    installDaemon();
    open();
    setTheFirstFieldAndSave([this] { return !config().empty(); });
    EXPECT_EQ(config(), savedConfig);
    EXPECT_THAT(desktop.calls(), IsEmpty());
    // "Restart Daemon", as soon as the question is there.
    ASSERT_TRUE(Desktop::eventually([this] {
        desktop.press("Return");
        return !desktop.calls().empty();
    }));
    EXPECT_THAT(desktop.calls().front(), HasSubstr("launchctl <kickstart> <-k> "));
    desktop.press("Escape");
    EXPECT_TRUE(Desktop::eventually([] { return !Desktop::settingsWindow(); }));
    const std::string lines = desktop.stop();
    EXPECT_THAT(lines, HasSubstr("\nostrel-menubar: settings saved to " + desktop.home.path() +
                                 "/.config/ostrel/config.json\nostrel-menubar: save outcome: saved\n"));
}

TEST_F(SettingsDesktop, laterLeavesTheDaemonAlone) {
    installDaemon();
    open();
    setTheFirstFieldAndSave([this] { return !config().empty(); });
    std::this_thread::sleep_for(2s); // the question comes once the app knows of the file
    desktop.press("Escape");         // "Later"
    std::this_thread::sleep_for(300ms);
    EXPECT_TRUE(Desktop::settingsWindow()) << "Escape answers the question, and closes nothing yet";
    desktop.press("alt+w");
    EXPECT_TRUE(Desktop::eventually([] { return !Desktop::settingsWindow(); }));
    EXPECT_THAT(desktop.calls(), IsEmpty());
}

TEST_F(SettingsDesktop, theCloseBoxClosesAndTheMenuOpensItAnew) {
    open();
    for (int attempt = 0; attempt < 20 && Desktop::settingsWindow(); ++attempt) {
        if (const auto window = Desktop::settingsWindow()) {
            desktop.click(window->x + window->width - 17, window->y + 15);
            (void)Desktop::eventually([] { return !Desktop::settingsWindow(); }, 1s);
        }
    }
    ASSERT_FALSE(Desktop::settingsWindow());
    desktop.choose("Down", 2);
    EXPECT_TRUE(Desktop::eventually([] { return Desktop::settingsWindow().has_value(); }));
    EXPECT_THAT(desktop.stop(), HasSubstr("config schema\n"));
}

TEST_F(SettingsDesktop, whileTheValidatorTakesItsTimeTheAppPolls) {
    holdValidator();
    open();
    setTheFirstFieldAndSave([this] { return std::filesystem::exists(desktop.home / "validating"); });
    desktop.openMenu(); // it answers
    desktop.press("Escape");
    EXPECT_TRUE(Desktop::eventually([this] { return !desktop.menu(); }));
    const auto before = desktop.strip();
    ASSERT_TRUE(before);
    // Another title.
    desktop.home.writeStatus(R"({"at":"2025-03-04T10:15:30Z","sessions":[
        {"sessionId":"id-1","dirName":"api","contextPct":100}]})");
    EXPECT_TRUE(Desktop::eventually([&] {
        const auto now = desktop.strip();
        return now && now->width != before->width;
    }));
    EXPECT_EQ(config(), "");
    letValidate();
    EXPECT_TRUE(Desktop::eventually([this] { return config() == savedConfig; }));
}

TEST_F(SettingsDesktop, aSaveThatRunsEndsWholeBeforeTheAppDoes) {
    holdValidator();
    open();
    setTheFirstFieldAndSave([this] { return std::filesystem::exists(desktop.home / "validating"); });
    desktop.requestEnd();
    std::this_thread::sleep_for(500ms);
    EXPECT_TRUE(desktop.strip()) << "the app waits for the save";
    EXPECT_EQ(config(), "");
    letValidate();
    EXPECT_TRUE(desktop.ends());
    EXPECT_EQ(config(), savedConfig);
    EXPECT_THAT(desktop.errors(), HasSubstr("ostrel-menubar: save outcome: saved\n"));
}

TEST_F(SettingsDesktop, aWindowThatIsOpenedAtTheStartIsTheSame) {
    desktop.home.environment["OSTREL_MENUBAR_OPEN_SETTINGS"] = "1";
    desktop.home.environment["OSTREL_CLI"] = DEMO_PROGRAM;
    desktop.start();
    EXPECT_TRUE(Desktop::eventually([] { return Desktop::settingsWindow().has_value(); }));
}
