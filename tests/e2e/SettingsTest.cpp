// The settings from the command line: against the stand-in daemon, and against daemons that fail in every way.

#include "MenubarCore/JSON/JSONValue.h"

#include "tests/e2e/Eventually.h"
#include "tests/e2e/ScratchHome.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace menubar;
using menubar::e2e::ChildProcess;
using menubar::e2e::eventually;
using menubar::e2e::ScratchHome;
using menubar::testing_support::bytesOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

using Result = ScratchHome::Result;
using Arguments = std::vector<std::string>;

class SettingsTest : public testing::Test {
protected:
    SettingsTest() {
        home.environment["OSTREL_CLI"] = DEMO_PROGRAM;
        fs::create_directories(home / ".config/ostrel");
    }

    [[nodiscard]] std::string configPath() const { return home / ".config/ostrel/config.json"; }

    void writeConfig(std::string_view bytes) const { home.write(".config/ostrel/config.json", bytes); }

    [[nodiscard]] std::string config() const { return bytesOf(configPath()); }

    /// What lies in the config file's directory.
    [[nodiscard]] std::set<std::string> directory() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(home / ".config/ostrel")) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    /// `ostrel-menubarctl settings` with these arguments.
    [[nodiscard]] Result settings(Arguments arguments) const {
        arguments.insert(arguments.begin(), "settings");
        return ScratchHome::run(home.menubarctl(std::move(arguments)));
    }

    /// The complaint of a command that must fail with status 1 and change nothing.
    [[nodiscard]] std::string complaintOf(Arguments arguments) const {
        const std::string before = config();
        const auto filesBefore = directory();
        const Result result = settings(std::move(arguments));
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(config(), before);
        EXPECT_EQ(directory(), filesBefore);
        return result.errors;
    }

    void expectSaved(Arguments arguments, const std::string& file) const {
        const std::string shown = testing::PrintToString(arguments);
        const Result result = settings(std::move(arguments));
        EXPECT_EQ(result.status, 0) << shown;
        EXPECT_EQ(result.output, "settings saved to " + configPath() + "\n") << shown;
        EXPECT_EQ(result.errors, "") << shown;
        EXPECT_EQ(config(), file) << shown;
        EXPECT_EQ(directory(), std::set<std::string>{"config.json"}) << shown;
    }

    /// A daemon whose `config schema` and `config validate PATH --json` are these lines of shell; the candidate's path
    /// is $3.
    void useDaemon(const std::string& schema, const std::string& validate) {
        const std::string path = home.write("daemon", "#!/bin/sh\ncase $2 in\nschema)\n" + schema +
                                                          "\n;;\nvalidate)\n" + validate + "\n;;\nesac\n");
        ASSERT_EQ(::chmod(path.c_str(), 0755), 0);
        home.environment["OSTREL_CLI"] = path;
    }

    /// The same with a usable schema.
    void useValidator(const std::string& validate) {
        useDaemon(R"(echo '{"x-groups":[{"id":"g","settings":[{"name":"a","control":"text"}]}]}')", validate);
    }

    [[nodiscard]] JSONValue document() const {
        const Result result = settings({"list", "--json"});
        EXPECT_EQ(result.status, 0) << result.errors;
        auto value = JSONValue::decode(result.output);
        EXPECT_TRUE(value) << result.output;
        return std::move(value).value_or(JSONValue::Object{});
    }

    /// One field of the document.
    [[nodiscard]] JSONValue field(const std::string& name) const {
        const JSONValue all = document();
        for (const JSONValue& each : *all.objectValue()->at("fields").arrayValue()) {
            if (each.objectValue()->at("name") == JSONValue(name)) {
                return each;
            }
        }
        ADD_FAILURE() << "no field " << name;
        return JSONValue::Object{};
    }

    ScratchHome home;
};

JSONValue member(const JSONValue& object, const std::string& key) {
    return object.objectValue()->at(key);
}

const std::string saved45 = "{\n  \"warn-context\" : 45\n}\n";

} // namespace

// Against the stand-in daemon

TEST_F(SettingsTest, whatElseIsInTheFileSurvives) {
    writeConfig(R"({"$schema":"s","dry-run":true,"warn-context":10})");
    ASSERT_EQ(::chmod(configPath().c_str(), 0640), 0);
    expectSaved({"set", "warn-context", "45"},
                "{\n  \"$schema\" : \"s\",\n  \"dry-run\" : true,\n  \"warn-context\" : 45\n}\n");
    struct stat info{};
    ASSERT_EQ(::stat(configPath().c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640);
}

TEST_F(SettingsTest, anEmptyListIsNotStoredAndTheDefaultThatHoldsIsNamed) {
    writeConfig(R"({"ignored-directories":["/a"],"on-critical":["inject"]})");
    const Result emptied = settings({"set", "ignored-directories"});
    EXPECT_EQ(emptied.status, 0);
    EXPECT_EQ(emptied.output, "settings saved to " + configPath() + "\n");
    EXPECT_EQ(emptied.errors, "ignored-directories: an empty list is not stored; the daemon's default holds: []\n");
    EXPECT_EQ(config(), "{\n  \"on-critical\" : [\n    \"inject\"\n  ]\n}\n");
    EXPECT_THAT(settings({"set", "on-critical"}).errors,
                StartsWith("on-critical: an empty list is not stored; the daemon's default holds: [\""));
}

TEST_F(SettingsTest, aNameThatTheSchemaListsTwiceIsAmbiguous) {
    useDaemon(R"(echo '{"x-groups":[{"id":"g","settings":[{"name":"a","control":"text"},{"name":"a"}]}]}')",
              R"(echo '{"ok":true}')");
    writeConfig(R"({"a":"old"})");
    const std::string complaint = "a: ambiguous: the schema lists this name more than once\n";
    EXPECT_EQ(complaintOf({"set", "a", "new"}), complaint);
    EXPECT_EQ(complaintOf({"reset", "a"}), complaint);
    const JSONValue all = document();
    EXPECT_EQ(all.objectValue()->at("fields").arrayValue()->size(), 2) << "both are listed";
}

TEST_F(SettingsTest, aValueThatIsNotUTF8IsRefused) {
    useValidator(R"(echo '{"ok":true}')");
    EXPECT_EQ(complaintOf({"set", "a",
                           "a\xff"
                           "b"}),
              "a: VALUE is not UTF-8\n");
    EXPECT_EQ(settings({"set", "a", "größe"}).status, 0);
}

TEST_F(SettingsTest, aConfigPathThatCanOnlyNameADirectoryMakesNone) {
    home.environment["OSTREL_CONFIG_FILE"] = home / "zz/";
    EXPECT_THAT(complaintOf({"set", "dry-run", "on"}), StartsWith("The config file could not be read\n"));
    EXPECT_FALSE(fs::exists(home / "zz"));
}

TEST_F(SettingsTest, resettingRemovesTheKeyAndRunsThePipelineEvenWhenThereIsNone) {
    writeConfig(R"({"dry-run":true,"warn-context":10})");
    expectSaved({"reset", "warn-context"}, "{\n  \"dry-run\" : true\n}\n");
    expectSaved({"reset", "warn-context"}, "{\n  \"dry-run\" : true\n}\n");
    expectSaved({"set", "dry-run", "yes"}, "{\n  \"dry-run\" : true\n}\n");
}

TEST_F(SettingsTest, gettingPrintsWhatSettingTakes) {
    writeConfig(R"({"agent-message":"[ostrel] hurry"})");
    for (const auto& [name, value] :
         std::map<std::string, std::string>{{"dry-run", "false\n"}, {"agent-message", "hurry\n"}, {"log-file", "\n"}}) {
        const Result result = settings({"get", name});
        EXPECT_EQ(result.status, 0) << name;
        EXPECT_EQ(result.output, value) << name;
        EXPECT_EQ(result.errors, "") << name;
    }
}

TEST_F(SettingsTest, aValueThatWasNotUnderstoodIsNoAnswer) {
    writeConfig(R"({"dry-run":1})");
    EXPECT_EQ(complaintOf({"get", "dry-run"}), "dry-run: The file holds 1, which is not a boolean\n");
}

TEST_F(SettingsTest, aNameThatIsNoSettingIsNamed) {
    for (const char* command : {"get", "set", "reset"}) {
        EXPECT_EQ(complaintOf({command, "warn"}), "warn: no such setting\n") << command;
    }
}

TEST_F(SettingsTest, aWrongNumberOfValuesIsAWrongCommandLine) {
    for (const Arguments& arguments : {Arguments{"set", "warn-context"},
                                       {"set", "warn-context", "1", "2"},
                                       {"set", "log-file", "a", "b"},
                                       {"set", "dry-run"}}) {
        const Result result = settings(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_THAT(result.errors, HasSubstr("\ntry: ostrel-menubarctl help settings set\n"));
        EXPECT_TRUE(directory().empty());
    }
}

TEST_F(SettingsTest, aValueThatBreaksTheSchemasRulesIsNotSaved) {
    writeConfig("{}");
    EXPECT_EQ(complaintOf({"set", "warn-context", "-5"}),
              "Fix the highlighted fields first.\nwarn-context: Must be between 1 and 99\n");
}

TEST_F(SettingsTest, whatTheDaemonRejectsIsListedByFieldAndThenInGeneral) {
    writeConfig(R"({"bogus":1,"log-level":"debug","other":2})");
    EXPECT_EQ(complaintOf({"set", "log-file", "relative"}), "The daemon rejected the file; see log-file.\n"
                                                            "log-file: must be an absolute path or begin with ~/\n"
                                                            "unknown option \"bogus\"\n"
                                                            "unknown option \"other\"\n");
}

TEST_F(SettingsTest, aSettingThatAFlagLocksIsLeftAlone) {
    home.writeStatus(R"({"at":"2025-03-04T10:15:30Z","configSources":{"warn-context":"cli","dry-run":"file"}})");
    writeConfig("{}");
    const std::string refusal = "warn-context: Set by a command-line flag in the launch agent; reinstall the daemon to "
                                "manage it here.\n";
    EXPECT_EQ(complaintOf({"set", "warn-context", "45"}), refusal);
    EXPECT_EQ(settings({"set", "dry-run", "on"}).status, 0);
    writeConfig(R"({"warn-context":10})");
    expectSaved({"reset", "warn-context"}, "{}\n");
}

TEST_F(SettingsTest, theFileIsFoundAsTheAppFindsIt) {
    const std::string loaded = home.write("loaded.json", R"({"warn-context":11})");
    const std::string named = home.write("named.json", R"({"warn-context":22})");
    home.writeStatus(R"({"at":"2025-03-04T10:15:30Z","configFile":{"path":")" + loaded + "\"}}");
    EXPECT_EQ(settings({"get", "warn-context"}).output, "11\n");
    EXPECT_EQ(settings({"get", "warn-context", "--status-file", "/none"}).output, "70\n");
    home.environment["OSTREL_CONFIG_FILE"] = "~/named.json";
    EXPECT_EQ(settings({"get", "warn-context"}).output, "22\n");
    const Result result = settings({"set", "warn-context", "45"});
    EXPECT_EQ(result.output, "settings saved to " + named + "\n");
    EXPECT_EQ(bytesOf(named), saved45);
    EXPECT_EQ(bytesOf(loaded), R"({"warn-context":11})");
}

TEST_F(SettingsTest, theDocumentSaysAllThereIsToSay) {
    home.writeStatus(R"({"at":"2025-03-04T10:15:30Z","config":{"settings":{"warn-context":50,"poll-interval":90000}},
                        "configSources":{"dry-run":"cli"}})");
    writeConfig(R"({"$schema":"s","warn-context":200,"dry-run":true,"providers":7,"zzz":1,"aaa":[]})");
    const JSONValue all = document();
    const JSONValue::Object& top = *all.objectValue();
    EXPECT_EQ(top.at("command"), JSONValue(std::string(DEMO_PROGRAM) + " config schema"));
    EXPECT_EQ(top.at("configFileExists"), JSONValue(true));
    EXPECT_EQ(top.at("configPath"), JSONValue(configPath()));
    EXPECT_EQ(top.at("version"), JSONValue(3));
    EXPECT_EQ(top.at("unknownKeys"), (JSONValue(JSONValue::Array{"aaa", "zzz"})));
    EXPECT_EQ(top.at("groups").arrayValue()->front(), *JSONValue::decode(R"({"id":"thresholds","title":"Thresholds",
                  "settings":["warn-context","critical-context","cache-min-context","token-price"]})"));
    EXPECT_EQ(top.at("groups").arrayValue()->back().objectValue()->at("title"), JSONValue("logging"));
    EXPECT_EQ(top.size(), 7);
    EXPECT_EQ(field("warn-context"), *JSONValue::decode(R"({"control":"percent","default":"70","editableText":"",
        "error":"Must be between 1 and 99","group":"thresholds","isSet":true,"label":"Warn context","live":"50%",
        "locked":false,"name":"warn-context","serialized":200,"source":"file","unreadable":null,"value":200})"));
    EXPECT_EQ(field("dry-run"), *JSONValue::decode(R"({"control":"toggle","default":"false","editableText":"",
        "error":null,"group":"actions","isSet":true,"label":"Dry run","live":null,
        "locked":true,"name":"dry-run","serialized":true,"source":"file","unreadable":null,"value":true})"));
    EXPECT_EQ(field("poll-interval"), *JSONValue::decode(R"({"control":"duration","default":"1s","editableText":"1s",
        "error":null,"group":"polling","isSet":false,"label":"Poll interval","live":"1m",
        "locked":false,"name":"poll-interval","serialized":null,"source":"default","unreadable":null,"value":"1s"})"));
    EXPECT_EQ(field("providers"), *JSONValue::decode(R"({"control":"enum","default":"[\"acme\",\"borealis\",\"quill\"]",
        "editableText":"","error":"The file holds 7, which is not a list of values","group":"polling","isSet":true,
        "label":"Providers","live":null,"locked":false,"name":"providers","serialized":7,"source":"file",
        "unreadable":7,"value":["acme","borealis","quill"]})"));
    EXPECT_EQ(member(field("quiet-hours"), "control"), JSONValue("time-range"));
}

TEST_F(SettingsTest, theListForPeopleNamesGroupsValuesSourcesAndFaults) {
    writeConfig(R"({"warn-context":200,"zzz":1})");
    const Result result = settings({"list"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, StartsWith("Thresholds\n  warn-context"));
    EXPECT_THAT(result.output, HasSubstr("from file\n    Must be between 1 and 99\n"));
    EXPECT_THAT(result.output, HasSubstr("\n\nPolling\n"));
    EXPECT_THAT(result.output, HasSubstr("\nThe config file has keys the daemon does not know: zzz.\n"));
    EXPECT_THAT(result.output, HasSubstr("\nConfig file: " + configPath() + "\n"));
}

TEST_F(SettingsTest, whatRunsIsToldOnlyWhenAskedFor) {
    const std::string errors = settings({"set", "warn-context", "45", "--verbose"}).errors;
    EXPECT_THAT(errors, HasSubstr("ostrel-menubar: ok: " + std::string(DEMO_PROGRAM) + " config schema\n"));
    EXPECT_THAT(errors, HasSubstr("ostrel-menubar: ok: " + std::string(DEMO_PROGRAM) + " config validate " +
                                  configPath() + "."));
    EXPECT_THAT(errors, HasSubstr("ostrel-menubar: settings saved to " + configPath() + "\n"));
}

TEST_F(SettingsTest, withoutADaemonEverySettingsCommandSaysHowToGetOne) {
    home.environment["OSTREL_CLI"] = home / "none";
    for (const Arguments& arguments :
         {Arguments{"list"}, {"list", "--json"}, {"get", "a"}, {"set", "a", "b"}, {"reset", "a"}}) {
        EXPECT_EQ(complaintOf(arguments),
                  "Daemon command line not found\n"
                  "The settings window runs ostrel config schema to learn the settings. Install the daemon (ostrel "
                  "install), put ostrel on PATH, or set OSTREL_CLI to the executable.\n");
    }
}

TEST_F(SettingsTest, aValidatorThatNeverEndsCanBeInterruptedAndTheNextSaveCleansUp) {
    writeConfig("{}");
    useValidator("echo $$ >\"$HOME/pid\"; exec sleep 1000");
    {
        ChildProcess child(home.menubarctl({"settings", "set", "a", "x"}));
        EXPECT_TRUE(eventually([this] { return !bytesOf(home / "pid").empty(); }));
        EXPECT_EQ(config(), "{}");
        EXPECT_EQ(directory().size(), 2) << "the candidate";
        child.send(SIGKILL);
        EXPECT_EQ(child.wait(), -SIGKILL);
        ::kill(static_cast<pid_t>(std::stol(bytesOf(home / "pid"))), SIGKILL);
    }
    EXPECT_EQ(config(), "{}");
    useValidator(R"(echo '{"ok":true}')");
    expectSaved({"set", "a", "x"}, "{\n  \"a\" : \"x\"\n}\n");
}
