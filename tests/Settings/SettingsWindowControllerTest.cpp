#include "MenubarApp/Settings/SettingsWindowController.h"

#include "MenubarApp/Platform/ProcessEnvironment.h"

#include "tests/support/SettingsWindowHarness.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace menubar {
namespace {

using recording::SettingsWindowHarness;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

/// Every test ends without a call to the window that makes no sense.
class SettingsWindowControllerTest : public ::testing::Test {
protected:
    void TearDown() override {
        for (const auto& window : m_desk.windows.windows) {
            EXPECT_THAT(window->host.faults, IsEmpty());
        }
    }

    SettingsWindowHarness m_desk;
};

// Showing and closing

TEST_F(SettingsWindowControllerTest, showMakesTheWindowLoadsAndBringsItForward) {
    m_desk.createController();
    EXPECT_FALSE(m_desk.controller->isOpen());
    m_desk.controller->show();
    EXPECT_TRUE(m_desk.controller->isOpen());
    EXPECT_EQ(m_desk.window().options, (WindowOptions{.title = "ostrel Settings",
                                                      .contentSize = {.width = 680, .height = 760},
                                                      .minimumSize = {.width = 520, .height = 420}}));
    EXPECT_THAT(m_desk.window().log, ElementsAre("bring forward"));
    EXPECT_TRUE(m_desk.shows("Loading settings from the daemon"));
    m_desk.mainLoop.drain();
    EXPECT_NE(m_desk.input("Text"), windowContent);
    EXPECT_FALSE(m_desk.shows("Loading"));
}

TEST_F(SettingsWindowControllerTest, showingAnOpenWindowOnlyBringsItForward) {
    m_desk.open();
    m_desk.type("Number", "5");
    m_desk.controller->show();
    m_desk.mainLoop.drain();
    EXPECT_EQ(m_desk.windows.windows.size(), 1U);
    EXPECT_THAT(m_desk.window().log, ElementsAre("bring forward", "bring forward"));
    EXPECT_THAT(m_desk.runs, ElementsAre("/opt/ostrel config schema"));
    EXPECT_EQ(m_desk.host().text(m_desk.input("Number")), "5");
}

TEST_F(SettingsWindowControllerTest, closingDropsTheWindowAndShowingAgainLoadsAnew) {
    m_desk.open();
    m_desk.type("Number", "5");
    m_desk.window().close();
    EXPECT_FALSE(m_desk.controller->isOpen());
    m_desk.mainLoop.drain();
    EXPECT_FALSE(m_desk.window().exists);
    m_desk.writeConfig(R"({"number":7})");
    m_desk.open();
    EXPECT_EQ(m_desk.windows.windows.size(), 2U);
    EXPECT_EQ(m_desk.host().text(m_desk.input("Number")), "7");
    EXPECT_THAT(m_desk.runs, ElementsAre("/opt/ostrel config schema", "/opt/ostrel config schema"));
}

TEST_F(SettingsWindowControllerTest, cancelClosesTheWindowFromWithinItsOwnButton) {
    m_desk.open();
    EXPECT_TRUE(m_desk.host().press("Cancel"));
    EXPECT_THAT(m_desk.window().log, Contains("perform close"));
    EXPECT_FALSE(m_desk.controller->isOpen());
    EXPECT_TRUE(m_desk.window().exists) << "the window is still handling the press";
    m_desk.mainLoop.drain();
    EXPECT_FALSE(m_desk.window().exists);
}

TEST_F(SettingsWindowControllerTest, closingTakesPendingTextOver) {
    m_desk.open();
    m_desk.host().compose(m_desk.input("Text"), "日本");
    m_desk.window().close();
    EXPECT_EQ(m_desk.field("text").value, SettingValue("日本"));
}

TEST_F(SettingsWindowControllerTest, openingAndClosingTwoHundredTimesLeavesNothingBehind) {
    m_desk.createController();
    for (int i = 0; i < 200; ++i) {
        m_desk.open();
        m_desk.window().close();
        m_desk.mainLoop.drain();
        EXPECT_FALSE(m_desk.window().exists);
    }
    EXPECT_EQ(m_desk.controller.use_count(), 1);
    EXPECT_EQ(m_desk.model.use_count(), 2); // the harness's and the controller's
    EXPECT_FALSE(m_desk.host().press("Save"));
}

TEST_F(SettingsWindowControllerTest, aControllerThatGoesTakesItsWindowAlong) {
    m_desk.open();
    m_desk.controller.reset();
    EXPECT_FALSE(m_desk.window().exists);
    m_desk.set("number", 3);
    m_desk.mainLoop.drain();
}

// Editing

TEST_F(SettingsWindowControllerTest, pollsReachTheModelWhetherOrNotTheWindowIsOpen) {
    m_desk.createController();
    m_desk.installDaemon();
    m_desk.poll();
    EXPECT_TRUE(m_desk.model->state().isDaemonInstalled);
}

TEST_F(SettingsWindowControllerTest, aPollThatChangesNothingTouchesNothing) {
    m_desk.open();
    m_desk.poll();
    m_desk.host().log.clear();
    m_desk.poll();
    EXPECT_THAT(m_desk.host().log, IsEmpty());
}

// Choosing a file

TEST(SettingsWindowPaths, choosingBeginsWhereTheFieldSays) {
    SettingsWindowHarness desk;
    desk.schemaResult.stdout_ = R"({"x-groups":[{"id":"g","settings":[{"name":"log-file","control":"path"}]}]})";
    desk.open();
    desk.type("Log file", "~/logs/out.log");
    EXPECT_TRUE(desk.press("Choose..."));
    const std::string home = homeDirectory(desk.environment);
    EXPECT_EQ(desk.window().panel, (OpenPanel{.title = "Log file", .startPath = home + "/logs/out.log"}));
}

TEST(SettingsWindowPaths, aChosenPathGoesIntoTheFieldAndACancelledPanelChangesNothing) {
    SettingsWindowHarness desk;
    desk.schemaResult.stdout_ = R"({"x-groups":[{"id":"g","settings":[{"name":"log-file","control":"path"}]}]})";
    desk.open();
    EXPECT_TRUE(desk.press("Choose..."));
    EXPECT_EQ(desk.window().panel, (OpenPanel{.title = "Log file", .startPath = ""}));
    desk.window().choose(std::nullopt);
    desk.mainLoop.drain();
    EXPECT_FALSE(desk.field("log-file").isSet);
    EXPECT_TRUE(desk.press("Choose..."));
    desk.window().choose("/tmp/out.log");
    desk.mainLoop.drain();
    EXPECT_EQ(desk.field("log-file").value, SettingValue("/tmp/out.log"));
    EXPECT_EQ(desk.host().text(desk.input("Log file")), "/tmp/out.log");
    EXPECT_EQ(desk.save(), SaveOutcome::Saved{});
    EXPECT_TRUE(desk.press("Choose..."));
    EXPECT_EQ(desk.window().panel, (OpenPanel{.title = "Log file", .startPath = "/tmp/out.log"}));
    desk.window().choose("/tmp/other.log");
    desk.mainLoop.drain();
    EXPECT_TRUE(desk.shows("Save validates") || desk.shows("Daemon not installed")) << "the saved mark has gone";
    EXPECT_THAT(desk.host().faults, IsEmpty());
}

// Saving

TEST_F(SettingsWindowControllerTest, aSaveIsLoggedShownAndAsksForARestart) {
    m_desk.openWithDaemon();
    m_desk.type("Number", "5");
    EXPECT_TRUE(m_desk.press("Save"));
    EXPECT_EQ(m_desk.config(), "{\n  \"number\" : 5\n}\n");
    EXPECT_THAT(m_desk.log, ElementsAre("settings saved to " + m_desk.configPath(), "save outcome: saved"));
    EXPECT_TRUE(m_desk.shows("Saved at 14:03. Restart the daemon to apply."));
    EXPECT_EQ(
        m_desk.window().alert,
        (Alert{.message = "Settings saved",
               .information = "The daemon reads the config file when it starts. Restart it now to apply the change?",
               .buttons = {"Restart Daemon", "Later"}}));
}

TEST_F(SettingsWindowControllerTest, onlyRestartDaemonRestartsIt) {
    m_desk.openWithDaemon();
    m_desk.type("Number", "5");
    m_desk.press("Save");
    m_desk.window().answerAlert(1);
    m_desk.mainLoop.drain();
    EXPECT_THAT(m_desk.commands.log, IsEmpty());

    m_desk.type("Number", "6");
    m_desk.press("Save");
    m_desk.window().answerAlert(0);
    m_desk.mainLoop.drain();
    EXPECT_THAT(m_desk.commands.log, ElementsAre("start"));
    EXPECT_TRUE(m_desk.shows("Restarting the daemon..."));
    m_desk.commands.complete();
    m_desk.mainLoop.drain();
    EXPECT_TRUE(m_desk.shows("Save validates the file"));
}

TEST_F(SettingsWindowControllerTest, withoutAnInstalledDaemonNothingIsAsked) {
    m_desk.open();
    m_desk.type("Number", "5");
    m_desk.press("Save");
    EXPECT_TRUE(m_desk.shows("Saved at"));
    EXPECT_FALSE(m_desk.window().alert.has_value());
}

TEST_F(SettingsWindowControllerTest, aRejectionScrollsToTheFirstRowWithAnErrorAndAsksNothing) {
    m_desk.validation = {
        .status = 1,
        .stdout_ =
            R"({"ok":false,"errors":[{"message":"too few","options":["words"]},{"message":"too small","options":["number"]},{"message":"no"}]})",
        .stderr_ = ""};
    m_desk.openWithDaemon();
    m_desk.type("Number", "5");
    m_desk.host().log.clear();
    m_desk.press("Save");
    EXPECT_FALSE(m_desk.window().alert.has_value());
    EXPECT_TRUE(m_desk.shows("The daemon rejected the file; see number, words.")) << m_desk.host().outline();
    EXPECT_TRUE(m_desk.shows("too small"));
    EXPECT_THAT(m_desk.log, Contains(StartsWith("save outcome: rejected")));
    const auto scrolls = [&] {
        std::vector<std::string> result;
        for (const std::string& call : m_desk.host().log) {
            if (call.starts_with("scroll")) {
                result.push_back(call);
            }
        }
        return result;
    }();
    ASSERT_EQ(scrolls.size(), 1U);
    // The second row: below the first, in the content of the form.
    EXPECT_THAT(scrolls[0], StartsWith("scroll " + std::to_string(m_desk.host().find("ScrollView")) + " to (32,"));
}

TEST_F(SettingsWindowControllerTest, whatIsComposedGoesIntoASave) {
    m_desk.open();
    m_desk.type("Number", "5");
    m_desk.host().compose(m_desk.input("Text"), "日本");
    m_desk.press("Save");
    EXPECT_THAT(m_desk.config(), HasSubstr("日本"));
}

TEST_F(SettingsWindowControllerTest, theWindowLivesWhileASaveRuns) {
    m_desk.open();
    m_desk.type("Number", "5");
    EXPECT_TRUE(m_desk.host().press("Save")); // nothing of the background has run yet
    EXPECT_TRUE(m_desk.shows("Validating with the daemon..."));
    m_desk.host().type(m_desk.input("Text"), "meanwhile");
    EXPECT_FALSE(m_desk.host().press("Save"));
    m_desk.mainLoop.drain();
    EXPECT_EQ(m_desk.config(), "{\n  \"number\" : 5\n}\n");
    EXPECT_EQ(m_desk.host().text(m_desk.input("Text")), "meanwhile");
}

TEST_F(SettingsWindowControllerTest, aWindowClosedWhileASaveRunsLetsItEndWhole) {
    m_desk.openWithDaemon();
    m_desk.type("Number", "5");
    m_desk.host().press("Save");
    m_desk.window().close();
    m_desk.mainLoop.drain();
    EXPECT_EQ(m_desk.config(), "{\n  \"number\" : 5\n}\n");
    EXPECT_FALSE(m_desk.window().alert.has_value());
    EXPECT_THAT(m_desk.log, Contains("save outcome: saved"));
}

TEST_F(SettingsWindowControllerTest, aControllerGoneWhileASaveRunsStillLogsTheOutcome) {
    m_desk.open();
    m_desk.type("Number", "5");
    m_desk.host().press("Save");
    m_desk.controller.reset();
    m_desk.mainLoop.drain();
    EXPECT_EQ(m_desk.config(), "{\n  \"number\" : 5\n}\n");
    EXPECT_THAT(m_desk.log, Contains("save outcome: saved"));
}

TEST_F(SettingsWindowControllerTest, theFooterRestartsTheDaemon) {
    m_desk.openWithDaemon();
    EXPECT_TRUE(m_desk.press("Restart daemon"));
    EXPECT_THAT(m_desk.commands.log, ElementsAre("start"));
    EXPECT_FALSE(m_desk.press("Restart daemon"));
}

// A file that another program changed

TEST_F(SettingsWindowControllerTest, aSaveOverAChangedFileOffersBothWaysOut) {
    m_desk.open();
    m_desk.type("Number", "5");
    m_desk.writeConfig(R"({"text":"theirs"})");
    m_desk.press("Save");
    EXPECT_TRUE(m_desk.shows("Another program has changed the config file"));
    EXPECT_TRUE(m_desk.press("Keep my edits"));
    EXPECT_EQ(m_desk.host().text(m_desk.input("Text")), "theirs");
    EXPECT_EQ(m_desk.host().text(m_desk.input("Number")), "5");
    EXPECT_FALSE(m_desk.shows("Another program"));
    m_desk.writeConfig(R"({"text":"again"})");
    m_desk.press("Save");
    EXPECT_TRUE(m_desk.press("Reload"));
    EXPECT_EQ(m_desk.host().text(m_desk.input("Text")), "again");
    EXPECT_EQ(m_desk.host().text(m_desk.input("Number")), "1");
}

// Saving on open

TEST_F(SettingsWindowControllerTest, editsThatWereCancelledDoNotComeBack) {
    m_desk.writeConfig("{}");
    m_desk.open();
    m_desk.type("Number", "5");
    m_desk.writeConfig("{");
    m_desk.poll();
    EXPECT_TRUE(m_desk.press("Keep my edits"));
    EXPECT_TRUE(m_desk.shows("The config file could not be read"));
    EXPECT_TRUE(m_desk.press("Cancel"));
    m_desk.writeConfig("{}");
    m_desk.open();
    EXPECT_EQ(m_desk.host().text(m_desk.input("Number")), "1");
    EXPECT_FALSE(m_desk.shows("edited"));
}

TEST_F(SettingsWindowControllerTest, editsComeBackWhenTheReloadIsTriedAgain) {
    m_desk.writeConfig("{}");
    m_desk.open();
    m_desk.type("Number", "5");
    m_desk.writeConfig("{");
    m_desk.poll();
    EXPECT_TRUE(m_desk.press("Keep my edits"));
    m_desk.writeConfig("{}");
    EXPECT_TRUE(m_desk.press("Try again"));
    EXPECT_EQ(m_desk.host().text(m_desk.input("Number")), "5");
}

TEST_F(SettingsWindowControllerTest, theEndOfTypingReachesTheModel) {
    m_desk.open();
    m_desk.type("Number", "1,5");
    EXPECT_TRUE(m_desk.shows("Must be a number"));
    m_desk.host().blur();
    m_desk.mainLoop.drain();
    EXPECT_FALSE(m_desk.shows("Must be a number"));
}

TEST_F(SettingsWindowControllerTest, savingOnOpenSetsOneSettingAndSavesWithoutAsking) {
    m_desk.installDaemon();
    m_desk.environment["OSTREL_MENUBAR_SAVE_ON_OPEN"] = "1";
    m_desk.environment["OSTREL_CONFIG_FILE"] = m_desk.home / "scratch.json";
    m_desk.open();
    EXPECT_THAT(m_desk.log,
                ElementsAre("save-on-open: setting warn-context to 45 and saving to " + (m_desk.home / "scratch.json"),
                            "settings saved to " + (m_desk.home / "scratch.json"), "save outcome: saved"));
    EXPECT_EQ(m_desk.files.contents(m_desk.home / "scratch.json").value_or(""), "{\n  \"warn-context\" : 45\n}\n");
    EXPECT_FALSE(m_desk.window().alert.has_value());
}

TEST_F(SettingsWindowControllerTest, savingOnOpenIsRefusedForTheRealConfigFile) {
    m_desk.environment["OSTREL_MENUBAR_SAVE_ON_OPEN"] = "1";
    for (const bool isEmpty : {false, true}) {
        if (isEmpty) {
            m_desk.environment["OSTREL_CONFIG_FILE"] = "";
        }
        m_desk.log.clear();
        m_desk.controller.reset();
        m_desk.open();
        EXPECT_THAT(m_desk.log,
                    ElementsAre("OSTREL_MENUBAR_SAVE_ON_OPEN ignored: set OSTREL_CONFIG_FILE to a scratch file first"));
        EXPECT_EQ(m_desk.config(), "");
    }
}

TEST_F(SettingsWindowControllerTest, savingOnOpenNeedsExactlyOne) {
    m_desk.environment["OSTREL_CONFIG_FILE"] = m_desk.home / "scratch.json";
    for (const char* value : {"", "0", "true", "yes", "01"}) {
        m_desk.environment["OSTREL_MENUBAR_SAVE_ON_OPEN"] = value;
        m_desk.controller.reset();
        m_desk.open();
    }
    EXPECT_THAT(m_desk.log, IsEmpty());
    EXPECT_FALSE(m_desk.files.exists(m_desk.home / "scratch.json"));
}

TEST_F(SettingsWindowControllerTest, savingOnOpenHappensOnceForEachWindow) {
    m_desk.environment["OSTREL_MENUBAR_SAVE_ON_OPEN"] = "1";
    m_desk.environment["OSTREL_CONFIG_FILE"] = m_desk.home / "scratch.json";
    m_desk.open();
    m_desk.log.clear();
    m_desk.model->load();
    m_desk.mainLoop.drain();
    EXPECT_THAT(m_desk.log, IsEmpty());
}

} // namespace
} // namespace menubar
