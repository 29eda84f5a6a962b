#include "MenubarApp/Settings/SettingsModel.h"

#include "tests/support/PropertyLists.h"
#include "tests/support/SettingsHarness.h"

#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using menubar::recording::SettingsHarness;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

using List = SettingValue::List;

const DaemonState running = DaemonState::Running{};

StatusFile statusWithConfigPath(std::string path) {
    return {.configFile = ConfigFileStatus{.path = std::move(path)}};
}

bool isIdle(const SettingsHarness& harness) {
    return std::holds_alternative<SettingsModel::Idle>(harness.model->state().saveState);
}

bool isSaving(const SettingsHarness& harness) {
    return std::holds_alternative<SettingsModel::Saving>(harness.model->state().saveState);
}

} // namespace

// Where the config file is

TEST(SettingsModel, theVariableNamesTheConfigFileAndItsTildeIsExpanded) {
    const StatusFile status = statusWithConfigPath("/etc/other.json");
    const auto path = [&](const char* value) {
        return SettingsModel::defaultConfigPath(&status, {{"OSTREL_CONFIG_FILE", value}}, "/home/ann");
    };
    EXPECT_EQ(path("~/x.json"), "/home/ann/x.json") << "even when the status file names another loaded file";
    EXPECT_EQ(path("/x.json"), "/x.json");
    EXPECT_EQ(path("~bob/x.json"), "~bob/x.json");
    EXPECT_EQ(path(""), "/etc/other.json");
}

TEST(SettingsModel, elseTheDaemonsOwnFileElseTheUsualOne) {
    const auto path = [](const StatusFile* status) {
        return SettingsModel::defaultConfigPath(status, {}, "/home/ann");
    };
    const StatusFile loaded = statusWithConfigPath("/etc/other.json");
    const StatusFile empty = statusWithConfigPath("");
    const StatusFile without{.configFile = ConfigFileStatus{}};
    EXPECT_EQ(path(&loaded), "/etc/other.json");
    EXPECT_EQ(path(nullptr), "/home/ann/.config/ostrel/config.json");
    EXPECT_EQ(path(&empty), "/home/ann/.config/ostrel/config.json");
    EXPECT_EQ(path(&without), "/home/ann/.config/ostrel/config.json");
    EXPECT_EQ(SettingsModel::defaultConfigPath(nullptr, {}, "/home/ann/"), "/home/ann//.config/ostrel/config.json");
}

// Loading

TEST(SettingsModel, beginsAsLoadingWithNothingInIt) {
    SettingsHarness harness;
    harness.create();
    EXPECT_TRUE(std::holds_alternative<SettingsModel::Loading>(harness.model->state().phase));
    EXPECT_EQ(harness.model->form(), nullptr);
    EXPECT_EQ(harness.model->state().configPath, harness.configPath());
    EXPECT_FALSE(harness.model->state().configFileExists);
    EXPECT_EQ(harness.model->commandDescription(), "");
    EXPECT_TRUE(isIdle(harness));
    EXPECT_FALSE(harness.model->canSave());
    EXPECT_FALSE(harness.model->state().isDaemonInstalled);
    EXPECT_THAT(harness.model->waitingFor(), IsEmpty());
    EXPECT_THAT(harness.runs, IsEmpty());
}

TEST(SettingsModel, aFileThatIsReadIsShownThroughTheSchema) {
    SettingsHarness harness;
    harness.writeConfig(R"({"number":5,"extra":true})");
    harness.load();
    EXPECT_TRUE(harness.isLoaded()) << harness.loadFailure();
    EXPECT_THAT(harness.runs, ElementsAre("/opt/ostrel config schema"));
    EXPECT_EQ(harness.model->commandDescription(), "/opt/ostrel config schema");
    EXPECT_TRUE(harness.model->state().configFileExists);
    EXPECT_EQ(harness.field("number").value, SettingValue(5));
    EXPECT_EQ(harness.field("text").value, SettingValue("d"));
    EXPECT_THAT(harness.model->form()->unknownKeys(), ElementsAre("extra"));
    EXPECT_FALSE(harness.model->canSave());
}

TEST(SettingsModel, withoutAFileTheDefaultsAreShownAndASaveCreatesIt) {
    SettingsHarness harness;
    harness.load();
    EXPECT_TRUE(harness.isLoaded());
    EXPECT_FALSE(harness.model->state().configFileExists);
    EXPECT_EQ(harness.field("text").value, SettingValue("d"));
    harness.set("number", 5);
    EXPECT_EQ(harness.save(), SaveOutcome::Saved{});
    EXPECT_TRUE(harness.model->state().configFileExists);
    EXPECT_EQ(harness.config(), "{\n  \"number\" : 5\n}\n");
}

TEST(SettingsModel, withoutADaemonCommandNothingIsStarted) {
    SettingsHarness harness;
    harness.hasDaemon = false;
    harness.load();
    EXPECT_EQ(harness.loadFailure(),
              "Daemon command line not found\n"
              "The settings window runs ostrel config schema to learn the settings. Install the daemon (ostrel "
              "install), put ostrel on PATH, or set OSTREL_CLI to the executable.");
    EXPECT_THAT(harness.runs, IsEmpty());
    EXPECT_THAT(harness.model->waitingFor(), IsEmpty());
    harness.hasDaemon = true;
    harness.reload();
    EXPECT_TRUE(harness.isLoaded()) << "trying again helps";
}

TEST(SettingsModel, theLaunchAgentsFlagsPrecedeTheSubcommand) {
    SettingsHarness harness;
    harness.environment.clear();
    fs::create_directories(harness.home / "Library/LaunchAgents");
    harness.home.write("Library/LaunchAgents/dev.ostrel.daemon.plist",
                       testing_support::launchAgentPlist({"/opt/ostrel", "--state", "/s", "watch"}));
    harness.load();
    EXPECT_TRUE(harness.isLoaded()) << harness.loadFailure();
    EXPECT_EQ(harness.model->commandDescription(), "/opt/ostrel --state /s config schema");
    EXPECT_TRUE(harness.model->state().isDaemonInstalled);
    harness.set("number", 5);
    harness.save();
    EXPECT_THAT(harness.runs, ElementsAre("/opt/ostrel --state /s config schema",
                                          "/opt/ostrel --state /s config validate CANDIDATE --json"));
}

TEST(SettingsModel, aSchemaCommandThatFailsIsShownWithWhatItSaid) {
    SettingsHarness harness;
    harness.schemaResult = {.status = 2, .stdout_ = "{}", .stderr_ = "no such subcommand"};
    harness.load();
    EXPECT_EQ(harness.loadFailure(),
              "Could not load the settings schema\n/opt/ostrel config schema\nno such subcommand");
    harness.schemaResult.stderr_ = "";
    harness.reload();
    EXPECT_EQ(harness.loadFailure(), "Could not load the settings schema\n/opt/ostrel config schema\nexit status 2");
    EXPECT_EQ(harness.model->form(), nullptr);
    EXPECT_FALSE(harness.model->state().configFileExists) << "nobody has looked";
}

TEST(SettingsModel, aSchemaThatCannotBeReadIsShownWithTheReason) {
    SettingsHarness harness;
    harness.schemaResult.stdout_ = R"({"x-groups":[{}]})";
    harness.load();
    EXPECT_EQ(harness.loadFailure(),
              "The settings schema could not be read\n/opt/ostrel config schema\nmissing key id");
}

TEST(SettingsModel, aConfigFileThatCannotBeReadIsShownWithItsPath) {
    struct Case {
        const char* bytes;
        const char* reason;
    };

    const Case cases[] = {
        {"[]", "The config file must hold one JSON object"}, {"{", ""}, {"", ""}, {"\xEF\xBB\xBF{}", ""}};
    for (const Case& each : cases) {
        SettingsHarness harness;
        harness.writeConfig(each.bytes);
        harness.load();
        EXPECT_THAT(harness.loadFailure(),
                    StartsWith("The config file could not be read\n" + harness.configPath() + "\n" + each.reason));
        EXPECT_TRUE(harness.model->state().configFileExists);
        EXPECT_EQ(harness.config(), each.bytes);
    }
}

TEST(SettingsModel, whatIsNoRegularFileIsShownWithTheReason) {
    SettingsHarness harness;
    fs::create_directory(harness.configPath());
    harness.load();
    EXPECT_EQ(harness.loadFailure(), "The config file could not be read\n" + harness.configPath() + "\nThe file \"" +
                                         harness.configPath() + "\" could not be read: it is a directory.");
    fs::remove(harness.configPath());
    fs::create_symlink("config.json", harness.configPath());
    harness.reload();
    EXPECT_THAT(harness.loadFailure(), testing::HasSubstr("Too many levels of symbolic links"));
}

TEST(SettingsModel, aFileOfFiftyMegabytesIsReadAndWritten) {
    SettingsHarness harness;
    harness.writeConfig(R"({"number":5,"extra":")" + std::string(50 << 20, 'x') + "\"}");
    harness.load();
    ASSERT_TRUE(harness.isLoaded()) << harness.loadFailure();
    harness.set("number", 6);
    EXPECT_EQ(harness.save(), SaveOutcome::Saved{});
    EXPECT_EQ(harness.config().size(),
              (50 << 20) + std::string("{\n  \"extra\" : \"\",\n  \"number\" : 6\n}\n").size());
}

TEST(SettingsModel, loadingForgetsEditsMessagesAndTheSavedMark) {
    SettingsHarness harness;
    harness.load();
    harness.validation.stdout_ = R"({"ok":false,"errors":[{"message":"m"}]})";
    harness.set("number", 5);
    harness.save();
    EXPECT_THAT(harness.model->state().generalErrors, ElementsAre("m"));
    harness.model->load();
    EXPECT_TRUE(std::holds_alternative<SettingsModel::Loading>(harness.model->state().phase));
    EXPECT_EQ(harness.model->form(), nullptr);
    EXPECT_THAT(harness.model->state().generalErrors, IsEmpty());
    EXPECT_TRUE(isIdle(harness));
    harness.mainLoop.drain();
    EXPECT_FALSE(harness.field("number").isSet);
}

TEST(SettingsModel, theFileThatTheDaemonHasLoadedIsEditedFromTheNextLoadOn) {
    SettingsHarness harness;
    const std::string other = harness.home.write("other.json", R"({"number":7})");
    harness.load();
    const StatusFile status = statusWithConfigPath(other);
    harness.model->update(&status, running);
    EXPECT_EQ(harness.model->state().configPath, harness.configPath()) << "not under the hands of who edits";
    harness.reload();
    EXPECT_EQ(harness.model->state().configPath, other);
    EXPECT_EQ(harness.field("number").value, SettingValue(7));
}

TEST(SettingsModel, onlyTheLatestOfSeveralLoadsCounts) {
    SettingsHarness harness;
    harness.create();
    harness.model->load();
    harness.model->load();
    harness.model->setAfterLoad([&] { harness.set("number", 5); });
    harness.mainLoop.drain();
    EXPECT_TRUE(harness.isLoaded());
    EXPECT_TRUE(harness.field("number").isSet) << "an answer to the first load would have thrown the edit away";
}

TEST(SettingsModel, theActionAfterALoadRunsOnceAndOnlyAfterOneThatSucceeds) {
    SettingsHarness harness;
    harness.create();
    int ran = 0;
    harness.model->setAfterLoad([&] { ++ran; });
    harness.schemaResult.status = 1;
    harness.reload();
    EXPECT_EQ(ran, 0);
    harness.schemaResult.status = 0;
    for (int i = 0; i < 2; ++i) {
        harness.reload();
        EXPECT_EQ(ran, 1);
    }
}

TEST(SettingsModel, theActionAfterALoadMayAskForAnother) {
    SettingsHarness harness;
    harness.create();
    int ran = 0;
    harness.model->setAfterLoad([&] {
        ++ran;
        harness.model->setAfterLoad([&] { ++ran; });
    });
    harness.reload();
    EXPECT_EQ(ran, 1);
    harness.reload();
    EXPECT_EQ(ran, 2);
}

// What the daemon says

TEST(SettingsModel, theDaemonsNoticesAreTakenOver) {
    SettingsHarness harness;
    harness.load();
    StatusFile status{.configFile = ConfigFileStatus{.changedSinceLoad = true},
                      .configError = ConfigError{.message = "bad", .path = "/c"}};
    harness.model->update(&status, running);
    EXPECT_TRUE(harness.model->state().restartNeeded);
    EXPECT_EQ(harness.model->state().configErrorNotice, (ConfigNotice::Error{.message = "bad", .path = "/c"}));
    harness.model->update(&status, DaemonState::Stale{});
    EXPECT_FALSE(harness.model->state().restartNeeded) << "only a running daemon can be told to restart";
    harness.model->update(nullptr, DaemonState::Missing{});
    EXPECT_EQ(harness.model->state().configErrorNotice, std::nullopt);
}

TEST(SettingsModel, anUpdateThatChangesNothingIsNotAnnounced) {
    SettingsHarness harness;
    harness.load();
    StatusFile status{.config = OstrelConfig{.settings = JSONValue::Object{{"number", 3}}},
                      .configFile = ConfigFileStatus{.changedSinceLoad = true},
                      .configSources = {{{"text", ConfigSource::cli}, {"no-field", ConfigSource::cli}}}};
    harness.changes = 0;
    harness.model->update(&status, running);
    EXPECT_EQ(harness.changes, 1) << "once for all that changed together";
    harness.model->update(&status, running);
    harness.model->update(&status, DaemonState::Running{.pollAge = 3});
    EXPECT_EQ(harness.changes, 1);
}

TEST(SettingsModel, theLaunchAgentIsLookedForWithEveryUpdate) {
    SettingsHarness harness;
    harness.load();
    EXPECT_FALSE(harness.model->state().isDaemonInstalled);
    fs::create_directories(harness.home / "Library/LaunchAgents");
    harness.home.write("Library/LaunchAgents/dev.ostrel.daemon.plist", "");
    harness.model->update(nullptr, DaemonState::Missing{});
    EXPECT_TRUE(harness.model->state().isDaemonInstalled);
    fs::remove_all(harness.home / "Library");
    harness.model->update(nullptr, DaemonState::Missing{});
    EXPECT_FALSE(harness.model->state().isDaemonInstalled);
}

TEST(SettingsModel, locksFollowTheDaemonsFlagsAndEditsStay) {
    SettingsHarness harness;
    StatusFile status{.configSources = {{{"text", ConfigSource::cli}, {"number", ConfigSource::file}}}};
    harness.create();
    harness.model->update(&status, running);
    harness.reload();
    EXPECT_TRUE(harness.field("text").isLockedByFlag) << "from the status that came before the load";
    harness.set("number", 5);
    status.configSources = {{{"number", ConfigSource::cli}}};
    harness.model->update(&status, running);
    EXPECT_FALSE(harness.field("text").isLockedByFlag);
    EXPECT_TRUE(harness.field("number").isLockedByFlag);
    EXPECT_EQ(harness.field("number").value, SettingValue(5));
    harness.model->update(nullptr, DaemonState::Missing{});
    EXPECT_FALSE(harness.field("number").isLockedByFlag);
}

TEST(SettingsModel, liveValuesAreThoseOfTheRunningDaemon) {
    SettingsHarness harness;
    harness.load();
    EXPECT_EQ(harness.model->liveValue(harness.field("number")), std::nullopt);
    StatusFile status{.config = OstrelConfig{.settings = JSONValue::Object{{"number", 3}, {"warn-context", 70}}}};
    harness.model->update(&status, running);
    EXPECT_EQ(harness.model->liveValue(harness.field("number")), "3");
    EXPECT_EQ(harness.model->liveValue(harness.field("warn-context")), "70%");
    EXPECT_EQ(harness.model->liveValue(harness.field("text")), std::nullopt);
    status.config->settings.emplace();
    harness.model->update(&status, running);
    EXPECT_EQ(harness.model->liveValue(harness.field("number")), std::nullopt);
}

// Saving

TEST(SettingsModel, onlyAChangedValidFormThatIsAtRestCanBeSaved) {
    SettingsHarness harness;
    harness.load();
    EXPECT_FALSE(harness.model->canSave()) << "nothing has changed";
    harness.set("number", 50);
    EXPECT_FALSE(harness.model->canSave()) << "a field is invalid";
    harness.set("number", 5);
    EXPECT_TRUE(harness.model->canSave());
    harness.model->save({});
    EXPECT_FALSE(harness.model->canSave()) << "saving";
    harness.mainLoop.drain();
    harness.set("number", 6);
    EXPECT_TRUE(harness.model->canSave());
    harness.model->restartDaemon();
    EXPECT_FALSE(harness.model->canSave()) << "restarting";
    harness.commands.complete();
    EXPECT_TRUE(harness.model->canSave());
    harness.model->load();
    EXPECT_FALSE(harness.model->canSave()) << "loading";
}

TEST(SettingsModel, aSaveValidatesThroughTheDaemonAndMarksTheForm) {
    SettingsHarness harness;
    harness.writeConfig(R"({"extra":1})");
    harness.load();
    harness.set("number", 5);
    harness.changes = 0;
    harness.model->save([&](const SaveOutcome& outcome) {
        EXPECT_EQ(outcome, SaveOutcome::Saved{});
        EXPECT_EQ(harness.model->state().saveState,
                  SettingsModel::SaveState(SettingsModel::Saved{.at = harness.clock.time}))
            << "the model knows before the caller does";
    });
    EXPECT_TRUE(isSaving(harness));
    EXPECT_EQ(harness.changes, 1);
    harness.mainLoop.drain();
    EXPECT_EQ(harness.changes, 2);
    EXPECT_EQ(harness.config(), "{\n  \"extra\" : 1,\n  \"number\" : 5\n}\n");
    EXPECT_FALSE(harness.model->form()->isDirty());
    EXPECT_EQ(harness.field("number").source, ValueSource::file);
    EXPECT_THAT(harness.log, ElementsAre("settings saved to " + harness.configPath()));
    EXPECT_THAT(harness.runs, ElementsAre("/opt/ostrel config schema", "/opt/ostrel config validate CANDIDATE --json"));
}

TEST(SettingsModel, theSavedMarkStaysUntilTheNextEdit) {
    SettingsHarness harness;
    harness.load();
    harness.set("number", 5);
    harness.save();
    EXPECT_TRUE(std::holds_alternative<SettingsModel::Saved>(harness.model->state().saveState));
    harness.model->update(nullptr, DaemonState::Missing{});
    EXPECT_TRUE(std::holds_alternative<SettingsModel::Saved>(harness.model->state().saveState));
    harness.set("number", 6);
    EXPECT_TRUE(isIdle(harness));
}

TEST(SettingsModel, aFailedMarkStaysThroughEdits) {
    SettingsHarness harness;
    harness.load();
    harness.validation.stdout_ = "{}";
    harness.set("number", 5);
    harness.save();
    harness.set("number", 6);
    EXPECT_NE(harness.saveFailure(), "");
    harness.validation.stdout_ = R"({"ok":true})";
    harness.save();
    EXPECT_EQ(harness.saveFailure(), "");
}

TEST(SettingsModel, aFormWithErrorsIsNotSaved) {
    SettingsHarness harness;
    harness.load();
    harness.set("number", 50);
    EXPECT_TRUE(std::holds_alternative<SaveOutcome::InvalidLocally>(harness.save().storage()));
    EXPECT_EQ(harness.saveFailure(), "Fix the highlighted fields first.");
    EXPECT_THAT(harness.log, ElementsAre("settings not saved: local validation failed "
                                         "[\"number\": \"Must be between 1 and 10\"]"));
    EXPECT_FALSE(fs::exists(harness.configPath()));
}

TEST(SettingsModel, aRejectionIsShownAtItsFields) {
    SettingsHarness harness;
    harness.writeConfig("{}");
    harness.load();
    harness.validation.stdout_ = R"({"ok":false,"errors":[{"message":"m1","options":["words"]},
        {"message":"m2","options":["number"]},{"message":"g"}]})";
    harness.set("number", 5);
    EXPECT_TRUE(std::holds_alternative<SaveOutcome::Rejected>(harness.save().storage()));
    EXPECT_EQ(harness.saveFailure(), "The daemon rejected the file; see number, words.");
    EXPECT_EQ(harness.field("number").error, "m2");
    EXPECT_EQ(harness.field("words").error, "m1");
    EXPECT_THAT(harness.model->state().generalErrors, ElementsAre("g"));
    EXPECT_THAT(harness.log, ElementsAre("settings rejected by config validate: "
                                         "fields=[\"number\": \"m2\", \"words\": \"m1\"] general=[\"g\"]"));
    EXPECT_EQ(harness.config(), "{}");
    EXPECT_TRUE(harness.model->form()->isDirty());
    EXPECT_FALSE(harness.model->canSave()) << "until the fields are edited";
}

TEST(SettingsModel, aRejectionThatNamesNoFieldSaysOnlyThat) {
    SettingsHarness harness;
    harness.load();
    harness.validation.stdout_ = R"({"ok":false,"errors":[{"message":"g"}]})";
    harness.set("number", 5);
    harness.save();
    EXPECT_EQ(harness.saveFailure(), "The daemon rejected the file.");
    harness.validation.stdout_ = R"({"ok":true})";
    harness.model->save({});
    EXPECT_THAT(harness.model->state().generalErrors, IsEmpty()) << "a new save forgets what the last one was told";
    harness.mainLoop.drain();
}

TEST(SettingsModel, aValidatorThatCannotBeUnderstoodIsQuoted) {
    SettingsHarness harness;
    harness.load();
    harness.validation = {.status = 3, .stdout_ = "", .stderr_ = "(boom)"};
    harness.set("number", 5);
    harness.save();
    EXPECT_EQ(harness.saveFailure(),
              "Could not run config validate: config validate printed something other than JSON ((boom))");
    EXPECT_THAT(harness.log,
                ElementsAre("settings not saved: config validate printed something other than JSON ((boom))"));
    EXPECT_FALSE(fs::exists(harness.configPath()));
}

TEST(SettingsModel, aFileThatCannotBeWrittenIsNamed) {
    SettingsHarness harness;
    harness.home.write("file", "");
    harness.environment["OSTREL_CONFIG_FILE"] = harness.home / "file/config.json";
    harness.load();
    EXPECT_FALSE(harness.model->state().configFileExists);
    harness.set("number", 5);
    harness.save();
    const std::string reason = "could not create the directory " + (harness.home / "file") + ": Not a directory";
    EXPECT_EQ(harness.saveFailure(), "Could not write " + (harness.home / "file/config.json") + ": " + reason);
    EXPECT_THAT(harness.log, ElementsAre("settings not saved: " + reason));
}

TEST(SettingsModel, withoutAFormNothingIsSaved) {
    SettingsHarness harness;
    harness.create();
    bool completed = false;
    harness.model->save([&](const SaveOutcome&) { completed = true; });
    harness.mainLoop.drain();
    EXPECT_FALSE(completed);
    EXPECT_TRUE(isIdle(harness));
}

TEST(SettingsModel, editsMadeWhileASaveRunsAreNeitherWrittenNorLost) {
    SettingsHarness harness;
    harness.load();
    harness.set("number", 5);
    harness.model->save({});
    harness.set("text", "later");
    harness.mainLoop.drain();
    EXPECT_EQ(harness.config(), "{\n  \"number\" : 5\n}\n");
    EXPECT_FALSE(harness.field("number").isDirty());
    EXPECT_TRUE(harness.field("text").isDirty());
    EXPECT_EQ(harness.save(), SaveOutcome::Saved{});
    EXPECT_EQ(harness.config(), "{\n  \"number\" : 5,\n  \"text\" : \"later\"\n}\n");
}

TEST(SettingsModel, aRejectionDoesNotCoverWhatWasEditedMeanwhile) {
    SettingsHarness harness;
    harness.load();
    harness.validation.stdout_ = R"({"ok":false,"errors":[{"message":"m","options":["number","text"]}]})";
    harness.set("number", 5);
    harness.set("text", "x");
    harness.model->save({});
    harness.set("number", 6);
    harness.mainLoop.drain();
    EXPECT_EQ(harness.field("number").error, std::nullopt);
    EXPECT_EQ(harness.field("text").error, "m");
}

TEST(SettingsModel, aSecondSaveWaitsForTheFirst) {
    SettingsHarness harness;
    harness.load();
    harness.set("number", 5);
    int completed = 0;
    harness.model->save([&](const SaveOutcome&) { ++completed; });
    harness.model->save([&](const SaveOutcome&) { ++completed; });
    harness.mainLoop.drain();
    EXPECT_EQ(completed, 1);
}

TEST(SettingsModel, aSaveCompletesForItsCallerEvenWhenTheModelIsGone) {
    SettingsHarness harness;
    harness.load();
    harness.set("number", 5);
    bool completed = false;
    harness.model->save([&](const SaveOutcome& outcome) { completed = outcome == SaveOutcome::Saved{}; });
    harness.model.reset();
    harness.mainLoop.drain();
    EXPECT_TRUE(completed);
    EXPECT_THAT(harness.log, IsEmpty());
}

TEST(SettingsModel, resultsForAModelThatIsGoneAreDropped) {
    SettingsHarness harness;
    harness.load();
    harness.model->load();
    harness.model->restartDaemon();
    harness.model.reset();
    harness.mainLoop.drain();
    harness.commands.complete();
    EXPECT_EQ(harness.runs.size(), 2);
}

// A command that never ends: nothing is drained

TEST(SettingsModel, whileTheValidatorRunsTheModelSaysSoAndStaysUsable) {
    SettingsHarness harness;
    harness.writeConfig("{}");
    harness.load();
    harness.set("number", 5);
    harness.model->save({});
    EXPECT_TRUE(isSaving(harness));
    EXPECT_THAT(harness.model->waitingFor(), ElementsAre("/opt/ostrel config validate"));
    harness.set("number", 6);
    harness.model->update(nullptr, DaemonState::Missing{});
    EXPECT_EQ(harness.field("number").value, SettingValue(6));
    EXPECT_EQ(harness.config(), "{}");
    harness.model->load();
    EXPECT_TRUE(isIdle(harness));
    EXPECT_THAT(harness.model->waitingFor(), ElementsAre("/opt/ostrel config schema", "/opt/ostrel config validate"));
    EXPECT_FALSE(harness.model->canSave()) << "two saves of one file at a time would share a candidate";
}

TEST(SettingsModel, aSaveThatEndsAfterAReloadLeavesTheNewFormAsItIs) {
    SettingsHarness harness;
    harness.load();
    harness.set("number", 5);
    harness.model->save({});
    harness.reload();
    EXPECT_TRUE(harness.isLoaded());
    EXPECT_TRUE(std::holds_alternative<SettingsModel::Saved>(harness.model->state().saveState));
    EXPECT_EQ(harness.field("number").value, SettingValue(5)) << "what was saved is what is shown";
    EXPECT_FALSE(harness.model->form()->isDirty());
    EXPECT_THAT(harness.model->waitingFor(), IsEmpty());
    harness.set("number", 6);
    EXPECT_EQ(harness.save(), SaveOutcome::Saved{});
}

TEST(SettingsModel, whatTheDaemonSaysOfALockedFieldKeepsNoSaveOff) {
    SettingsHarness harness;
    harness.load();
    const StatusFile status{.configSources = {{{"words", ConfigSource::cli}, {"text", ConfigSource::cli}}}};
    harness.model->update(&status, running);
    harness.validation.stdout_ = R"({"ok":false,"errors":[{"message":"both","options":["words","text"]},
        {"message":"m","options":["number"]}]})";
    harness.set("number", 5);
    const SaveOutcome outcome = harness.save();
    ASSERT_NE(outcome.rejected(), nullptr);
    EXPECT_THAT(outcome.rejected()->general, ElementsAre("both"));
    EXPECT_EQ(harness.saveFailure(), "The daemon rejected the file; see number.");
    EXPECT_THAT(harness.model->state().generalErrors, ElementsAre("both"));
    EXPECT_EQ(harness.field("words").error, std::nullopt);
    harness.set("number", 6);
    EXPECT_TRUE(harness.model->canSave());
}

TEST(SettingsModel, aRejectionThatComesAfterAReloadIsNotAboutTheNewForm) {
    SettingsHarness harness;
    harness.load();
    harness.validation.stdout_ = R"({"ok":false,"errors":[{"message":"m","options":["number"]},{"message":"g"}]})";
    harness.duringValidation = [&](const std::string&) { harness.reload(); };
    harness.set("number", 5);
    harness.save();
    EXPECT_TRUE(harness.isLoaded());
    EXPECT_EQ(harness.saveFailure(), "The daemon rejected the file; see number.");
    EXPECT_EQ(harness.field("number").error, std::nullopt);
    EXPECT_THAT(harness.model->state().generalErrors, IsEmpty());
}

// Changes by others

TEST(SettingsModel, aFileThatWasChangedSinceItWasLoadedIsNotOverwritten) {
    SettingsHarness harness;
    harness.writeConfig("{}");
    harness.load();
    harness.set("number", 5);
    harness.writeConfig(R"({"text":"theirs"})");
    EXPECT_TRUE(std::holds_alternative<SaveOutcome::WriteFailed>(harness.save().storage()));
    EXPECT_EQ(harness.saveFailure(),
              "Could not write " + harness.configPath() +
                  ": the file was changed by another program after it was loaded, so it was left as it is");
    EXPECT_TRUE(harness.model->state().fileChangedOnDisk);
    EXPECT_EQ(harness.config(), R"({"text":"theirs"})");
    EXPECT_EQ(harness.field("number").value, SettingValue(5));
    EXPECT_TRUE(harness.model->canSave());
    EXPECT_TRUE(std::holds_alternative<SaveOutcome::WriteFailed>(harness.save().storage())) << "again and again";
}

TEST(SettingsModel, aReloadThatKeepsEditsBringsBothTogether) {
    SettingsHarness harness;
    harness.writeConfig(R"({"text":"old","words":["a"]})");
    harness.load();
    harness.set("number", 5);
    harness.model->edit([](SettingsForm& form) { form.reset("words"); });
    harness.writeConfig(R"({"text":"theirs","words":["b"],"more":1})");
    harness.save();
    harness.model->reloadKeepingEdits();
    EXPECT_FALSE(harness.model->state().fileChangedOnDisk);
    harness.mainLoop.drain();
    EXPECT_EQ(harness.field("text").value, SettingValue("theirs"));
    EXPECT_EQ(harness.field("number").value, SettingValue(5));
    EXPECT_TRUE(harness.field("number").isDirty());
    EXPECT_FALSE(harness.field("words").isSet);
    EXPECT_EQ(harness.save(), SaveOutcome::Saved{});
    EXPECT_EQ(harness.config(), "{\n  \"more\" : 1,\n  \"number\" : 5,\n  \"text\" : \"theirs\"\n}\n");
}

TEST(SettingsModel, aReloadThatFailsKeepsTheEditsUntilOneSucceeds) {
    SettingsHarness harness;
    harness.writeConfig("{}");
    harness.load();
    harness.set("number", 5);
    harness.writeConfig("{");
    harness.model->reloadKeepingEdits();
    harness.mainLoop.drain();
    EXPECT_NE(harness.loadFailure(), "");
    harness.writeConfig("{}");
    harness.model->tryAgain();
    harness.mainLoop.drain();
    EXPECT_EQ(harness.field("number").value, SettingValue(5));
    harness.reload();
    EXPECT_FALSE(harness.field("number").isSet) << "a plain load drops them";
}

TEST(SettingsModel, aPlainLoadAfterAReloadThatFailedBringsNoEditsBack) {
    SettingsHarness harness;
    harness.writeConfig("{}");
    harness.load();
    harness.set("number", 5);
    harness.writeConfig("{");
    harness.model->reloadKeepingEdits();
    harness.mainLoop.drain();
    harness.writeConfig("{}");
    harness.reload();
    EXPECT_TRUE(harness.isLoaded());
    EXPECT_FALSE(harness.field("number").isSet);
}

TEST(SettingsModel, aPlainLoadTakesTheirFileAndDropsTheEdits) {
    SettingsHarness harness;
    harness.writeConfig("{}");
    harness.load();
    harness.set("number", 5);
    harness.writeConfig(R"({"number":7})");
    harness.save();
    harness.reload();
    EXPECT_FALSE(harness.model->state().fileChangedOnDisk);
    EXPECT_EQ(harness.field("number").value, SettingValue(7));
}

TEST(SettingsModel, aLinkedConfigFileStaysLinked) {
    SettingsHarness harness;
    const std::string target = harness.home.write("dotfiles.json", "{}");
    fs::create_symlink(target, harness.configPath());
    harness.load();
    harness.set("number", 5);
    std::string candidateDirectory;
    harness.duringValidation = [&](const std::string& candidate) {
        candidateDirectory = fs::path(candidate).parent_path();
    };
    EXPECT_EQ(harness.save(), SaveOutcome::Saved{});
    EXPECT_TRUE(fs::is_symlink(harness.configPath()));
    EXPECT_EQ(candidateDirectory, harness.home.path());
    EXPECT_EQ(harness.config(), "{\n  \"number\" : 5\n}\n");
    EXPECT_THAT(harness.log, ElementsAre("settings saved to " + harness.configPath()));
}

// Restarting

TEST(SettingsModel, aRestartGoesThroughTheLaunchAgentAndEndsIdle) {
    SettingsHarness harness;
    harness.load();
    harness.set("number", 5);
    harness.save();
    harness.model->restartDaemon();
    EXPECT_TRUE(std::holds_alternative<SettingsModel::Restarting>(harness.model->state().saveState));
    EXPECT_THAT(harness.commands.log, ElementsAre("start"));
    harness.commands.complete();
    EXPECT_TRUE(isIdle(harness));
}

// Observing

TEST(SettingsModel, whoUnsubscribedIsNotCalledAnyMore) {
    SettingsHarness harness;
    harness.load();
    int calls = 0;
    {
        const Subscription subscription = harness.model->onChange([&] { ++calls; });
        harness.set("number", 5);
        EXPECT_EQ(calls, 1);
    }
    harness.set("number", 6);
    EXPECT_EQ(calls, 1);
}

TEST(SettingsModel, anObserverMayChangeTheModelAndLetGoOfIt) {
    SettingsHarness harness;
    harness.load();
    Subscription subscription = harness.model->onChange([&] {
        if (harness.model && !harness.field("text").isSet) {
            harness.set("text", "by the observer");
            harness.model.reset();
        }
    });
    const std::weak_ptr<SettingsModel> weak = harness.model;
    harness.set("number", 5);
    EXPECT_TRUE(weak.expired());
}
