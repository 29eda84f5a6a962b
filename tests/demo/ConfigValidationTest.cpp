#include "demo/ConfigValidation.h"

#include "MenubarCore/Settings/SettingsForm.h"

#include "demo/ConfigSchema.h"
#include "demo/DemoConfig.h"

#include <map>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::demo;

namespace {

using Kind = SettingControl::Kind;

JSONValue::Object object(std::string_view document) {
    auto value = SettingsForm::parseFile(document);
    EXPECT_TRUE(value) << document;
    return std::move(value).value_or(JSONValue::Object{});
}

/// Each issue as "option,option: message" in one line.
std::string issues(std::string_view document) {
    std::string lines;
    for (const ValidationIssue& issue : configIssues(object(document))) {
        std::string names;
        for (const std::string& option : issue.options) {
            names += (names.empty() ? "" : ",") + option;
        }
        lines += names + ": " + issue.message + "\n";
    }
    return lines;
}

} // namespace

TEST(DemoSchema, theAppUnderstandsTheDocument) {
    const auto schema = SettingsSchema::decode(configSchemaDocument());
    ASSERT_TRUE(schema) << describe(schema.error());
    EXPECT_EQ(*schema, configSchema());
}

TEST(DemoSchema, hasEveryControlAndEveryHint) {
    const auto settings = configSchema().settings();
    EXPECT_GE(settings.size(), 30);
    std::set<Kind> kinds;
    std::set<std::string> hints;
    for (const SettingSpec& spec : settings) {
        kinds.insert(spec.control.kind());
        const std::map<std::string, bool> given{{"help", !spec.help.empty()},
                                                {"no restart", !spec.restart},
                                                {"min", spec.min.has_value()},
                                                {"max", spec.max.has_value()},
                                                {"integer", spec.integer},
                                                {"values", !spec.values.empty()},
                                                {"multiple", spec.multiple},
                                                {"multiline", spec.multiline},
                                                {"prefix", spec.requiredPrefix.has_value()},
                                                {"item pattern", spec.itemPattern.has_value()},
                                                {"pattern", spec.pattern.has_value()},
                                                {"default", spec.defaultValue.has_value()}};
        for (const auto& [hint, isGiven] : given) {
            if (isGiven) {
                hints.insert(hint);
            }
        }
    }
    EXPECT_EQ(kinds.size(), 9);
    EXPECT_EQ(hints.size(), 12);
    EXPECT_NE(configSchema().setting("warn-context"), nullptr);
}

TEST(DemoSchema, aFormOfDefaultsIsAConfigThatTheDaemonTakes) {
    SettingsForm form(configSchema(), {});
    for (const SettingSpec& spec : configSchema().settings()) {
        form.set(spec.name, SettingField::defaultValue(spec));
    }
    EXPECT_TRUE(form.isValid());
    const JSONValue written = form.serialized();
    EXPECT_EQ(configIssues(*written.objectValue()), std::vector<ValidationIssue>{});
}

TEST(DemoValidation, findsEverythingThatIsWrongAtOnce) {
    EXPECT_EQ(issues(R"({"bogus":1,"warn-context":200,"dry-run":"yes","poll-interval":"soon","log-file":"x",
                         "max-sessions":"7","ignored-directories":["/a","b"]})"),
              "bogus: unknown option \"bogus\"\n"
              "dry-run: has a value of the wrong type: yes\n"
              "ignored-directories: Item 2 must match ^(/|~/)\n"
              "log-file: must be an absolute path or begin with ~/\n"
              "max-sessions: has a value of the wrong type: 7\n"
              "poll-interval: Use a duration such as 30s, 10m, or 1h\n"
              "warn-context: Must be between 1 and 99\n");
}

TEST(DemoValidation, settingsMayContradictOneAnother) {
    EXPECT_EQ(issues(R"({"warn-context":90})"),
              "warn-context,critical-context: warn-context must be below critical-context\n");
    EXPECT_EQ(issues(R"({"$schema":"s","warn-context":89})"), "");
    EXPECT_EQ(issues(R"({"poll-interval":"1h"})"),
              "poll-interval,stale-after: poll-interval must be shorter than stale-after\n");
    EXPECT_EQ(issues(R"({"poll-interval":"59m"})"), "");
    EXPECT_EQ(issues(R"({"handoff-location":"external"})"),
              "handoff-directory: handoff-location is external, so handoff-directory must be set\n");
    EXPECT_EQ(issues(R"({"handoff-location":"external","handoff-directory":"/h"})"), "");
}

TEST(DemoValidation, quietHoursAreTwoTimes) {
    const std::string refused =
        "quiet-hours: must be null or an object with \"from\" and \"to\", each a time such as 22:00\n";
    for (const char* value : {"\"22:00\"", "{}", R"({"from":"22:00"})", R"({"from":"22:00","to":7})",
                              R"({"from":"24:00","to":"07:00"})", R"({"from":"22:60","to":"07:00"})",
                              R"({"from":"2:00","to":"07:00"})", R"({"from":"22:00","to":"07:00","x":1})"}) {
        EXPECT_EQ(issues(R"({"quiet-hours":)" + std::string(value) + "}"), refused) << value;
    }
    EXPECT_EQ(issues(R"({"quiet-hours":{"from":"07:00","to":"07:00"}})"), "quiet-hours: begins when it ends\n");
    EXPECT_EQ(issues(R"({"quiet-hours":{"from":"23:59","to":"00:00"}})"), "");
    EXPECT_EQ(issues(R"({"quiet-hours":null})"), "");
}

TEST(DemoValidation, printsWhatTheAppReads) {
    EXPECT_EQ(validationDocument({}).compactText(), R"({"ok":true})");
    EXPECT_EQ(
        validationDocument({{.options = {"a", "b"}, .message = "m"}, {.options = {}, .message = "n"}}).compactText(),
        R"({"errors":[{"message":"m","options":["a","b"]},{"message":"n","options":[]}],"ok":false})");
}

TEST(DemoConfig, aFlagComesBeforeTheFileAndTheFileBeforeTheDefault) {
    const DemoConfig config({{"warn-context", 45}, {"poll-interval", "30s"}, {"dry-run", true}},
                            {{"poll-interval", "250ms"}});
    EXPECT_EQ(config.number("warn-context"), 45);
    EXPECT_EQ(config.number("critical-context"), 90);
    EXPECT_EQ(config.number("poll-interval"), 250);
    EXPECT_EQ(config.sources().at("warn-context"), ConfigSource::file);
    EXPECT_EQ(config.sources().at("critical-context"), ConfigSource::default_);
    EXPECT_EQ(config.sources().at("poll-interval"), ConfigSource::cli);
    EXPECT_EQ(config.sources().size(), configSchema().settings().size());
    EXPECT_EQ(config.settings().at("dry-run"), JSONValue(true));
}

TEST(DemoConfig, durationsAreReportedInMilliseconds) {
    const auto milliseconds = [](const char* text) {
        const DemoConfig config({{"cooldown", text}}, {});
        return config.settings().at("cooldown");
    };
    EXPECT_EQ(milliseconds("500ms"), JSONValue(500));
    EXPECT_EQ(milliseconds("30s"), JSONValue(30'000));
    EXPECT_EQ(milliseconds("10m"), JSONValue(600'000));
    EXPECT_EQ(milliseconds("2h"), JSONValue(7'200'000));
    EXPECT_EQ(milliseconds("99999999999s"), JSONValue());
    const DemoConfig defaults;
    EXPECT_EQ(defaults.settings().at("log-file"), JSONValue());
}
