#include "tests/support/SettingsHarness.h"
#include "tests/support/SettingsWindowHarness.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace menubar {

using recording::SettingsHarness;
using recording::SettingsWindowHarness;
using ::testing::IsEmpty;

namespace {

/// Looks at the file as the open window does at every poll.
void check(SettingsHarness& harness) {
    harness.model->checkFile();
    harness.mainLoop.drain();
}

/// A loaded form whose file holds the number 3.
void loadNumber(SettingsHarness& harness) {
    harness.writeConfig(R"({"number":3})");
    harness.load();
}

} // namespace

TEST(SettingsFileCheck, aFileThatIsAsItWasLoadedChangesNothing) {
    SettingsHarness harness;
    loadNumber(harness);
    const int changes = harness.changes;
    harness.writeConfig(R"({"number":3})"); // by content, not by time
    check(harness);
    harness.set("number", 5);
    check(harness);
    EXPECT_EQ(harness.changes, changes + 1);
    EXPECT_FALSE(harness.model->state().fileChangedOnDisk);
}

TEST(SettingsFileCheck, aFormWithoutEditsQuietlyBecomesWhatTheFileSays) {
    SettingsHarness harness;
    loadNumber(harness);
    const int changes = harness.changes;
    harness.writeConfig(R"({"number":7,"other":1})");
    check(harness);
    EXPECT_TRUE(harness.isLoaded());
    EXPECT_EQ(harness.changes, changes + 1) << "at once, without a loading screen between";
    EXPECT_EQ(harness.field("number").value, SettingValue(7));
    EXPECT_FALSE(harness.model->form()->isDirty());
    EXPECT_EQ(harness.model->form()->unknownKeys(), std::vector<std::string>{"other"});
    EXPECT_FALSE(harness.model->state().fileChangedOnDisk);
    harness.set("number", 8);
    EXPECT_EQ(harness.save(), SaveOutcome::Saved{}) << "it is the baseline now";
    EXPECT_EQ(harness.config(), "{\n  \"number\" : 8,\n  \"other\" : 1\n}\n");
}

TEST(SettingsFileCheck, aFormWithEditsIsLeftAloneAndTheChangeIsTold) {
    SettingsHarness harness;
    loadNumber(harness);
    harness.set("number", 5);
    harness.writeConfig(R"({"number":7})");
    check(harness);
    EXPECT_TRUE(harness.model->state().fileChangedOnDisk);
    EXPECT_EQ(harness.field("number").value, SettingValue(5));
    const int changes = harness.changes;
    check(harness);
    EXPECT_EQ(harness.changes, changes) << "told once";
    harness.set("number", 3);
    check(harness);
    EXPECT_FALSE(harness.model->state().fileChangedOnDisk);
    EXPECT_EQ(harness.field("number").value, SettingValue(7)) << "with the edits taken back the file counts";
}

TEST(SettingsFileCheck, aFormWithHalfANumberIsLeftAloneToo) {
    SettingsHarness harness;
    harness.writeConfig(R"({"number":5})");
    harness.load();
    harness.model->edit([](SettingsForm& form) { form.typeNumber("number", "1,"); });
    harness.writeConfig(R"({"number":6})");
    harness.model->checkFile();
    harness.mainLoop.drain();
    EXPECT_TRUE(harness.model->state().fileChangedOnDisk);
    EXPECT_EQ(harness.field("number").value, SettingValue(5));
}

TEST(SettingsFileCheck, aChangeThatWasTakenBackIsNoLongerTold) {
    SettingsHarness harness;
    loadNumber(harness);
    harness.set("number", 5);
    harness.writeConfig(R"({"number":7})");
    check(harness);
    harness.writeConfig(R"({"number":3})");
    check(harness);
    EXPECT_FALSE(harness.model->state().fileChangedOnDisk);
    EXPECT_EQ(harness.save(), SaveOutcome::Saved{});
}

TEST(SettingsFileCheck, aFileThatIsNoConfigIsToldAndTakenOnceItIsOne) {
    SettingsHarness harness;
    loadNumber(harness);
    harness.writeConfig(R"({"number":)");
    check(harness);
    EXPECT_TRUE(harness.model->state().fileChangedOnDisk);
    EXPECT_EQ(harness.field("number").value, SettingValue(3));
    harness.writeConfig(R"({"number":9})");
    check(harness);
    EXPECT_FALSE(harness.model->state().fileChangedOnDisk);
    EXPECT_EQ(harness.field("number").value, SettingValue(9));
}

TEST(SettingsFileCheck, aFileThatAppearsOrGoesIsFollowed) {
    SettingsHarness harness;
    harness.load();
    EXPECT_FALSE(harness.model->state().configFileExists);
    harness.writeConfig(R"({"number":7})");
    check(harness);
    EXPECT_TRUE(harness.model->state().configFileExists);
    EXPECT_EQ(harness.field("number").value, SettingValue(7));
    std::filesystem::remove(harness.configPath());
    check(harness);
    EXPECT_FALSE(harness.model->state().configFileExists);
    EXPECT_FALSE(harness.field("number").isSet);
}

TEST(SettingsFileCheck, aFileThatCannotBeReadJustNowIsLookedAtAgain) {
    SettingsHarness harness;
    loadNumber(harness);
    std::filesystem::remove(harness.configPath());
    std::filesystem::create_directory(harness.configPath());
    check(harness);
    EXPECT_FALSE(harness.model->state().fileChangedOnDisk);
    EXPECT_EQ(harness.field("number").value, SettingValue(3));
    std::filesystem::remove(harness.configPath());
    harness.writeConfig(R"({"number":7})");
    check(harness);
    EXPECT_EQ(harness.field("number").value, SettingValue(7));
}

TEST(SettingsFileCheck, whatASaveWritesIsNoChange) {
    SettingsHarness harness;
    loadNumber(harness);
    harness.set("number", 5);
    harness.model->checkFile(); // reads before the save, is heard after it
    EXPECT_EQ(harness.save(), SaveOutcome::Saved{});
    check(harness);
    EXPECT_FALSE(harness.model->state().fileChangedOnDisk);
    EXPECT_EQ(harness.field("number").value, SettingValue(5));
}

TEST(SettingsFileCheck, nothingIsLookedAtWithoutAFormOrDuringASave) {
    SettingsHarness harness;
    harness.create();
    check(harness);
    EXPECT_FALSE(harness.model->state().fileChangedOnDisk);
    loadNumber(harness);
    harness.set("number", 5);
    harness.duringValidation = [&](const std::string&) { harness.model->checkFile(); };
    EXPECT_EQ(harness.save(), SaveOutcome::Saved{});
    EXPECT_FALSE(harness.model->state().fileChangedOnDisk);
}

TEST(SettingsFileCheck, aLoadThatBeganSinceIsNotDisturbed) {
    SettingsHarness harness;
    loadNumber(harness);
    harness.writeConfig(R"({"number":7})");
    harness.model->checkFile();
    harness.model->load();
    harness.mainLoop.drain();
    EXPECT_TRUE(harness.isLoaded());
    EXPECT_EQ(harness.field("number").value, SettingValue(7));
}

TEST(SettingsFileCheck, complaintsAboutTheFormBeforeGoWithIt) {
    SettingsHarness harness;
    loadNumber(harness);
    harness.validation = {.status = 1,
                          .stdout_ = R"({"ok":false,"errors":[{"option":"number","message":"too odd"},
                                        {"message":"in general"}]})",
                          .stderr_ = ""};
    harness.set("number", 5);
    const SaveOutcome outcome = harness.save();
    ASSERT_NE(outcome.rejected(), nullptr);
    harness.set("number", 3);
    harness.writeConfig(R"({"number":7})");
    check(harness);
    EXPECT_EQ(harness.field("number").error, std::nullopt);
    EXPECT_THAT(harness.model->state().generalErrors, IsEmpty());
    EXPECT_EQ(harness.saveFailure(), "");
}

TEST(SettingsFileCheck, locksFollowTheDaemonInTheNewFormToo) {
    SettingsHarness harness;
    loadNumber(harness);
    const StatusFile status{.configSources = std::map<std::string, ConfigSource>{{"number", ConfigSource::cli}}};
    harness.model->update(&status, DaemonState::Missing{});
    harness.writeConfig(R"({"number":7})");
    check(harness);
    EXPECT_TRUE(harness.field("number").isLockedByFlag);
}

TEST(SettingsFileCheck, theModelMayGoMeanwhile) {
    SettingsHarness harness;
    loadNumber(harness);
    harness.writeConfig(R"({"number":7})");
    harness.model->checkFile();
    const std::weak_ptr weak(harness.model);
    harness.model.reset();
    harness.mainLoop.drain();
    EXPECT_TRUE(weak.expired());
}

TEST(SettingsFileCheck, anOpenWindowLooksAtEveryPollAndAClosedOneDoesNot) {
    SettingsWindowHarness harness;
    harness.writeConfig(R"({"number":3})");
    harness.open();
    harness.writeConfig(R"({"number":7})");
    harness.poll();
    EXPECT_EQ(harness.field("number").value, SettingValue(7));
    harness.controller->windowWillClose();
    harness.writeConfig(R"({"number":8})");
    harness.poll();
    EXPECT_EQ(harness.field("number").value, SettingValue(7));
}

} // namespace menubar
