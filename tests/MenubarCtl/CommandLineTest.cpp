#include "MenubarCtl/CommandLine.h"

#include "MenubarCore/Text/Timestamp.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::ctl;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

using Arguments = std::vector<std::string>;

CommandLine parsed(const Arguments& arguments) {
    auto line = parseCommandLine(arguments);
    EXPECT_TRUE(line) << line.error().message;
    return line.value_or(CommandLine{});
}

std::string errorOf(const Arguments& arguments) {
    const auto line = parseCommandLine(arguments);
    return line ? "no error" : line.error().message;
}

struct CommandCase {
    const char* name;
    Arguments arguments;
    Command command;
};

class EachCommand : public testing::TestWithParam<CommandCase> {};

struct WrongCase {
    const char* name;
    Arguments arguments;
    const char* message;
};

class WrongCommandLine : public testing::TestWithParam<WrongCase> {};

} // namespace

TEST_P(EachCommand, isKnownByItsWords) {
    EXPECT_EQ(parsed(GetParam().arguments).command, GetParam().command);
}

INSTANTIATE_TEST_SUITE_P(
    Words, EachCommand,
    testing::Values(CommandCase{"help", {"--help"}, Command::help},
                    CommandCase{"version", {"--version"}, Command::version},
                    CommandCase{"status", {"status"}, Command::status}, CommandCase{"menu", {"menu"}, Command::menu},
                    CommandCase{"settingsList", {"settings", "list"}, Command::settingsList},
                    CommandCase{"settingsGet", {"settings", "get", "dryRun"}, Command::settingsGet},
                    CommandCase{"settingsSet", {"settings", "set", "dryRun", "on"}, Command::settingsSet},
                    CommandCase{"settingsReset", {"settings", "reset", "dryRun"}, Command::settingsReset},
                    CommandCase{"focus", {"focus", "api"}, Command::focus},
                    CommandCase{"focusWaiting", {"focus", "--waiting"}, Command::focus},
                    CommandCase{"sessions", {"sessions", "--json", "--watch"}, Command::sessions},
                    CommandCase{"bar", {"bar", "tmux", "--watch"}, Command::bar},
                    CommandCase{"doctor", {"doctor", "--json"}, Command::doctor},
                    CommandCase{"completions", {"completions", "fish"}, Command::completions},
                    CommandCase{"complete", {"complete", "--", "menu", "--wa"}, Command::complete},
                    CommandCase{"helpWord", {"help"}, Command::help}, CommandCase{"helpLetter", {"-h"}, Command::help},
                    CommandCase{"versionLetter", {"-V"}, Command::version},
                    CommandCase{"daemonStatus", {"daemon", "status"}, Command::daemonStatus},
                    CommandCase{"daemonStart", {"daemon", "start"}, Command::daemonStart},
                    CommandCase{"daemonStop", {"daemon", "stop"}, Command::daemonStop},
                    CommandCase{"daemonRestart", {"daemon", "restart"}, Command::daemonRestart},
                    CommandCase{"loginOn", {"login", "on"}, Command::loginOn},
                    CommandCase{"loginOff", {"login", "off"}, Command::loginOff},
                    CommandCase{"loginStatus", {"login", "status"}, Command::loginStatus}),
    [](const auto& info) { return info.param.name; });

TEST_P(WrongCommandLine, isRefusedWithALineThatSaysWhy) {
    EXPECT_EQ(errorOf(GetParam().arguments), GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, WrongCommandLine,
    testing::Values(
        WrongCase{"nothing", {}, "a command is missing"}, WrongCase{"onlyOptions", {"--json"}, "a command is missing"},
        WrongCase{"unknownCommand", {"statsu"}, "unknown command \"statsu\"; did you mean \"status\"?"},
        WrongCase{"emptyCommand", {""}, "unknown command \"\""},
        WrongCase{"dashCommand", {"-"}, "unknown command \"-\""},
        WrongCase{"groupAlone", {"settings"}, "settings needs to be told what to do: list, get, set, reset"},
        WrongCase{"loginAlone", {"login"}, "login needs to be told what to do: status, on, off"},
        WrongCase{"loginUnknown", {"login", "true"}, "unknown command \"login true\""},
        WrongCase{"loginWithJSON", {"login", "status", "--json"}, "login status does not take --json"},
        WrongCase{"unknownOfGroup", {"daemon", "kick"}, "unknown command \"daemon kick\""},
        WrongCase{
            "nearOfGroup", {"settings", "lsit"}, "unknown command \"settings lsit\"; did you mean \"settings list\"?"},
        WrongCase{"unknownTopic", {"help", "statsu"}, "unknown command \"statsu\"; did you mean \"status\"?"},
        WrongCase{"noFormat", {"bar"}, "bar needs a format: plain, tmux, waybar, polybar, swiftbar"},
        WrongCase{"unknownFormat", {"bar", "tmx"}, "unknown format \"tmx\"; did you mean \"tmux\"?"},
        WrongCase{"secondFormat", {"bar", "tmux", "plain"}, "unexpected argument \"plain\""},
        WrongCase{"unknownShell", {"completions", "csh"}, "unknown shell \"csh\"; did you mean \"zsh\"?"},
        WrongCase{"waitingAndName", {"focus", "api", "--waiting"}, "unexpected argument \"api\""},
        WrongCase{"checkOfMenu", {"menu", "--check"}, "menu does not take --check"},
        WrongCase{"color",
                  {"status", "--color=alwyas"},
                  "--color is none of auto, always, never: \"alwyas\"; did you mean \"always\"?"},
        WrongCase{"unknownOption", {"status", "--jsno"}, "unknown option \"--jsno\"; did you mean \"--json\"?"},
        WrongCase{"shortOption", {"status", "-j"}, "unknown option \"-j\""},
        WrongCase{"abbreviatedOption", {"status", "--js"}, "unknown option \"--js\""},
        WrongCase{"extraWord", {"status", "now"}, "unexpected argument \"now\""},
        WrongCase{"extraName", {"focus", "a", "b"}, "unexpected argument \"b\""},
        WrongCase{"missingName", {"focus"}, "focus needs a name"},
        WrongCase{"emptyName", {"settings", "get", ""}, "settings get needs a name"},
        WrongCase{"missingNameOfSet", {"settings", "set"}, "settings set needs a name"},
        WrongCase{"flagWithValue", {"status", "--json=yes"}, "--json takes no value"},
        WrongCase{"helpWithValue", {"--help=status"}, "--help takes no value"},
        WrongCase{"jsonOfFocus", {"focus", "api", "--json"}, "focus does not take --json"},
        WrongCase{"watchOfStatus", {"status", "--watch"}, "status does not take --watch"},
        WrongCase{"watchWithJSON", {"menu", "--watch", "--json"}, "--watch and --json exclude each other"},
        WrongCase{"optionWithoutValue", {"status", "--now"}, "--now needs a value"},
        WrongCase{"emptyStatusFile", {"status", "--status-file="}, "--status-file needs a path"},
        WrongCase{"badNow", {"status", "--now", "today"}, "--now is not an ISO 8601 time stamp: \"today\""},
        WrongCase{"nowWithoutZone",
                  {"status", "--now=2025-03-04T10:15:30"},
                  "--now is not an ISO 8601 time stamp: \"2025-03-04T10:15:30\""},
        WrongCase{"impossibleDay",
                  {"status", "--now=2025-02-30T10:15:30Z"},
                  "--now is not an ISO 8601 time stamp: \"2025-02-30T10:15:30Z\""},
        WrongCase{"unknownZone",
                  {"status", "--time-zone", "Mars/Olympus"},
                  "--time-zone is not the name of a time zone: \"Mars/Olympus\""},
        WrongCase{"emptyZone", {"status", "--time-zone="}, "--time-zone is not the name of a time zone: \"\""},
        WrongCase{"optionAfterTheEndOfOptions", {"status", "--", "--json"}, "unexpected argument \"--json\""}),
    [](const auto& info) { return info.param.name; });

TEST(CommandLine, optionsStandAnywhereAndInBothForms) {
    const Arguments spread{"--json",      "--status-file",  "/a b/s.json", "menu", "--now=2025-03-04T10:15:30Z",
                           "--time-zone", "Asia/Kathmandu", "--verbose"};
    const CommandLine line = parsed(spread);
    EXPECT_EQ(line.command, Command::menu);
    EXPECT_TRUE(line.json);
    EXPECT_TRUE(line.verbose);
    EXPECT_FALSE(line.watch);
    EXPECT_EQ(line.statusFile, "/a b/s.json");
    EXPECT_EQ(line.now, parseTimestamp("2025-03-04T10:15:30Z"));
    EXPECT_EQ(line.timeZone, "Asia/Kathmandu");
}

TEST(CommandLine, nothingIsFixedUnlessItIsAskedFor) {
    const CommandLine line = parsed({"status"});
    EXPECT_FALSE(line.json || line.watch || line.verbose);
    EXPECT_FALSE(line.statusFile || line.now || line.timeZone);
}

TEST(CommandLine, ofARepeatedOptionTheLastHolds) {
    EXPECT_EQ(parsed({"status", "--status-file", "a", "--status-file=b"}).statusFile, "b");
}

TEST(CommandLine, anOptionsValueMayLookLikeAnOption) {
    EXPECT_EQ(parsed({"status", "--status-file", "--json"}).statusFile, "--json");
    EXPECT_EQ(parsed({"status", "--status-file=a=b"}).statusFile, "a=b");
}

TEST(CommandLine, helpHoldsAsSoonAsItIsMetAndIsAboutTheWordsBefore) {
    const CommandLine line = parsed({"status", "--help", "--bogus"});
    EXPECT_EQ(line.command, Command::help);
    EXPECT_EQ(line.topic, "status");
    EXPECT_EQ(errorOf({"status", "--bogus", "--help"}), "unknown option \"--bogus\"");
    EXPECT_EQ(parsed({"settings", "set", "-h"}).topic, "settings set");
    EXPECT_EQ(parsed({"help", "settings", "set"}).topic, "settings set");
    EXPECT_EQ(parsed({"help", "daemon"}).topic, "daemon");
    EXPECT_EQ(parsed({"--help", "status"}).topic, "");
    EXPECT_EQ(errorOf({"bogus", "--help"}), "unknown command \"bogus\"");
}

TEST(CommandLine, aWrongOneSaysWhereHelpIs) {
    const auto textOf = [](const Arguments& arguments) { return parseCommandLine(arguments).error().text(); };
    EXPECT_EQ(textOf({"nonsense"}), "unknown command \"nonsense\"\ntry: ostrel-menubarctl help");
    EXPECT_EQ(textOf({"settings", "set"}), "settings set needs a name\ntry: ostrel-menubarctl help settings set");
    EXPECT_EQ(textOf({"daemon", "kick"}), "unknown command \"daemon kick\"\ntry: ostrel-menubarctl help daemon");
}

TEST(CommandLine, choicesAreRead) {
    EXPECT_EQ(parsed({"bar", "swiftbar"}).barFormat, BarFormat::swiftbar);
    EXPECT_EQ(parsed({"completions", "zsh"}).shell, Shell::zsh);
    EXPECT_EQ(parsed({"status", "--color", "never"}).color, ColorChoice::never);
    EXPECT_EQ(parsed({"status"}).color, ColorChoice::automatic);
    EXPECT_TRUE(parsed({"focus", "--waiting"}).waiting);
    EXPECT_TRUE(parsed({"status", "--check", "--json"}).check);
    EXPECT_THAT(parsed({"complete", "--", "menu", "--watch", ""}).values, ElementsAre("menu", "--watch", ""));
}

TEST(CommandLine, valuesMayBeginWithADash) {
    const CommandLine line = parsed({"settings", "set", "offset", "-5", "-", "-x"});
    EXPECT_EQ(line.name, "offset");
    EXPECT_THAT(line.values, ElementsAre("-5", "-", "-x"));
}

TEST(CommandLine, optionsAmongValuesAreStillOptions) {
    const CommandLine line = parsed({"settings", "set", "offset", "-5", "--verbose", "7"});
    EXPECT_TRUE(line.verbose);
    EXPECT_THAT(line.values, ElementsAre("-5", "7"));
    EXPECT_EQ(errorOf({"settings", "set", "offset", "--five"}), "unknown option \"--five\"");
}

TEST(CommandLine, afterTheEndOfOptionsEverythingIsAWord) {
    const CommandLine line = parsed({"settings", "set", "--", "-name", "--json", "--", "-5"});
    EXPECT_EQ(line.name, "-name");
    EXPECT_FALSE(line.json);
    EXPECT_THAT(line.values, ElementsAre("--json", "--", "-5"));
    EXPECT_EQ(parsed({"focus", "--", "--help"}).name, "--help");
}

TEST(CommandLine, setTakesTheEmptyListAndEmptyValues) {
    EXPECT_THAT(parsed({"settings", "set", "ignored"}).values, IsEmpty());
    EXPECT_THAT(parsed({"settings", "set", "ignored", ""}).values, ElementsAre(""));
}

TEST(CommandLine, aMessageNeverRepeatsControlCharacters) {
    EXPECT_EQ(errorOf({"\x1b[31mred"}), "unknown command \"\uFFFD[31mred\"");
    EXPECT_EQ(errorOf({"status", "--now", "a\u202Eb\nc"}), "--now is not an ISO 8601 time stamp: \"a\uFFFDb\uFFFDc\"");
}

TEST(CommandLine, aMessageRepeatsNoMoreOfAnArgumentThanFitsIt) {
    EXPECT_EQ(errorOf({std::string(200, 'a')}), "unknown command \"" + std::string(200, 'a') + "\"");
    EXPECT_EQ(errorOf({std::string(100'000, 'a')}), "unknown command \"" + std::string(199, 'a') + "…\"");
    EXPECT_EQ(errorOf({"status", "--time-zone", std::string(100'000, 'a')}),
              "--time-zone is not the name of a time zone: \"" + std::string(199, 'a') + "…\"");
}
