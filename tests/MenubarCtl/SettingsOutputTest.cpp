#include "MenubarCtl/SettingsOutput.h"

#include "tests/support/SettingsHarness.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::ctl;
using menubar::recording::SettingsHarness;
using testing::HasSubstr;

namespace {

constexpr TextStyle whole{.cuts = false};

} // namespace

TEST(SettingsOutput, theListForPeopleIsAlignedByGroup) {
    SettingsHarness harness;
    harness.writeConfig(R"({"number":50,"words":["a","b"],"extra":1})");
    harness.load();
    StatusFile status{.config = OstrelConfig{.settings = JSONValue::Object{{"warn-context", 70}}},
                      .configSources = {{{"text", ConfigSource::cli}}}};
    harness.model->update(&status, DaemonState::Running{});
    EXPECT_EQ(settingsText(*harness.model, whole), "Group\n"
                                                   "  text          d     set by a flag\n"
                                                   "  number        50    from file\n"
                                                   "    Must be between 1 and 10\n"
                                                   "  words         a, b  from file\n"
                                                   "  warn-context  0     default, daemon is running with: 70%\n"
                                                   "\n"
                                                   "The config file has keys the daemon does not know: extra.\n"
                                                   "Config file: " +
                                                       harness.configPath() + "\n");
}

TEST(SettingsOutput, aValueThatWasNotUnderstoodIsShownAsTheFileHoldsIt) {
    SettingsHarness harness;
    harness.writeConfig(R"({"number":[1,2]})");
    harness.load();
    EXPECT_THAT(settingsText(*harness.model, whole),
                HasSubstr("  number        [1,2]  from file\n    The file holds [1,2], which is not a number\n"));
}

TEST(SettingsOutput, nothingThatATerminalWouldObeyGetsThroughToPeople) {
    SettingsHarness harness;
    harness.schemaResult.stdout_ = R"({"x-groups":[{"id":"g","title":"G\u001b[2J","settings":[
        {"name":"a\u0007","control":"text"},{"name":"b","control":"list"}]}]})";
    harness.writeConfig(R"({"a\u0007":"x\u001b]0;","b":["\u202e",""],"k\u001b":1})");
    harness.load();
    const std::string text = settingsText(*harness.model, whole);
    for (const char* hostile : {"\x1b", "\x07", "\u202e"}) {
        EXPECT_THAT(text, testing::Not(HasSubstr(hostile)));
    }
    EXPECT_THAT(text, HasSubstr("x\uFFFD]0;"));
}

TEST(SettingsOutput, anEmptyTextIsADash) {
    SettingsHarness harness;
    harness.schemaResult.stdout_ = R"({"x-groups":[{"id":"g","settings":[
        {"name":"t","control":"text"},{"name":"p","control":"path"},{"name":"l","control":"list"}]}]})";
    harness.load();
    EXPECT_THAT(settingsText(*harness.model, whole),
                testing::StartsWith("g\n  t  -  default\n  p  -  default\n  l  -  default\n"));
}

TEST(SettingsOutput, onATerminalALineIsNoWiderAndTheValueGivesWayFirst) {
    SettingsHarness harness;
    harness.writeConfig(R"({"text":"abcdefghijklmnopqrstuvwxyz"})");
    harness.load();
    StatusFile status{.config = OstrelConfig{.settings = JSONValue::Object{{"warn-context", 70}}}};
    harness.model->update(&status, DaemonState::Running{});
    EXPECT_THAT(settingsText(*harness.model, {.columns = 44}),
                testing::AllOf(HasSubstr("\n  text          abcdefghijklmnop…  from file\n"),
                               HasSubstr("\n  warn-context  0                  default,…\n")));
    EXPECT_THAT(settingsText(*harness.model, whole), HasSubstr("abcdefghijklmnopqrstuvwxyz  from file\n"));
}

TEST(SettingsOutput, aSchemaWithoutSettingsStillNamesTheFile) {
    SettingsHarness harness;
    harness.schemaResult.stdout_ = "{}";
    harness.load();
    EXPECT_EQ(settingsText(*harness.model, whole),
              "No config file yet; defaults shown. It will be written to " + harness.configPath() + "\n");
}

TEST(SettingsOutput, aDocumentIsValidEvenWhereAPathIsNoText) {
    SettingsHarness harness;
    harness.environment["OSTREL_CONFIG_FILE"] = "/tmp/\xFF.json";
    harness.load();
    const JSONValue document = settingsDocument(*harness.model);
    EXPECT_EQ(document.objectValue()->at("configPath"), JSONValue("/tmp/\uFFFD.json"));
    EXPECT_TRUE(document.encode(JSONLayout::compact));
}

TEST(SettingsOutput, aValueIsPrintedAsItIsSet) {
    SettingField field;
    field.value = true;
    EXPECT_EQ(valueText(field), "true\n");
    field.value = 1e15;
    EXPECT_EQ(valueText(field), "1e+15\n");
    field.value = SettingValue::List{"a", "b c"};
    EXPECT_EQ(valueText(field), "a\nb c\n");
    field.value = SettingValue::List{};
    EXPECT_EQ(valueText(field), "");
    field.value = "-- x";
    EXPECT_EQ(valueText(field), "-- x\n");
    field.spec.requiredPrefix = "--";
    EXPECT_EQ(valueText(field), "x\n");
}

TEST(SettingsOutput, aFailureListsItsFieldsAndThenWhatIsGeneral) {
    EXPECT_EQ(failureText("M.", SaveOutcome::InvalidLocally{{{"b", "2"}, {"a", "1"}}}), "M.\na: 1\nb: 2\n");
    EXPECT_EQ(failureText("M.", SaveOutcome::Rejected{.fields = {{"b", "2"}, {"a", "1"}}, .general = {"z", "y"}}),
              "M.\na: 1\nb: 2\nz\ny\n");
    EXPECT_EQ(failureText("M.", SaveOutcome::CommandFailed{"c"}), "M.\n");
    EXPECT_EQ(failureText("M.", SaveOutcome::WriteFailed{"w"}), "M.\n");
}
