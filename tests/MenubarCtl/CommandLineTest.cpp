#include "MenubarCtl/CommandLine.h"

#include "MenubarCore/Text/Timestamp.h"

#include <iterator>
#include <sstream>
#include <string>
#include <utility>
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

/// The words of a line, which blanks keep apart.
Arguments words(const std::string& line) {
    std::istringstream in(line);
    return {std::istream_iterator<std::string>(in), {}};
}

} // namespace

TEST(CommandLine, eachCommandIsKnownByItsWords) {
    const std::pair<const char*, Command> cases[] = {
        {"--help", Command::help},
        {"--version", Command::version},
        {"status", Command::status},
        {"menu", Command::menu},
        {"settings list", Command::settingsList},
        {"settings get dryRun", Command::settingsGet},
        {"settings set dryRun on", Command::settingsSet},
        {"settings reset dryRun", Command::settingsReset},
        {"focus api", Command::focus},
        {"focus --waiting", Command::focus},
        {"sessions --json --watch", Command::sessions},
        {"bar tmux --watch", Command::bar},
        {"doctor --json", Command::doctor},
        {"completions fish", Command::completions},
        {"complete -- menu --wa", Command::complete},
        {"help", Command::help},
        {"-h", Command::help},
        {"-V", Command::version},
        {"daemon status", Command::daemonStatus},
        {"daemon start", Command::daemonStart},
        {"daemon stop", Command::daemonStop},
        {"daemon restart", Command::daemonRestart},
        {"login on", Command::loginOn},
        {"login off", Command::loginOff},
        {"login status", Command::loginStatus},
    };
    for (const auto& [line, command] : cases) {
        EXPECT_EQ(parsed(words(line)).command, command) << line;
    }
}

TEST(CommandLine, aWrongOneIsRefusedWithALineThatSaysWhy) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "a command is missing"},
        {"--json", "a command is missing"},
        {"statsu", "unknown command \"statsu\"; did you mean \"status\"?"},
        {"-", "unknown command \"-\""},
        {"settings", "settings needs to be told what to do: list, get, set, reset"},
        {"login", "login needs to be told what to do: status, on, off"},
        {"login true", "unknown command \"login true\""},
        {"login status --json", "login status does not take --json"},
        {"daemon kick", "unknown command \"daemon kick\""},
        {"settings lsit", "unknown command \"settings lsit\"; did you mean \"settings list\"?"},
        {"help statsu", "unknown command \"statsu\"; did you mean \"status\"?"},
        {"bar", "bar needs a format: plain, tmux, waybar, polybar, swiftbar"},
        {"bar tmx", "unknown format \"tmx\"; did you mean \"tmux\"?"},
        {"bar tmux plain", "unexpected argument \"plain\""},
        {"completions csh", "unknown shell \"csh\"; did you mean \"zsh\"?"},
        {"focus api --waiting", "unexpected argument \"api\""},
        {"menu --check", "menu does not take --check"},
        {"status --color=alwyas", "--color is none of auto, always, never: \"alwyas\"; did you mean \"always\"?"},
        {"status --jsno", "unknown option \"--jsno\"; did you mean \"--json\"?"},
        {"status -j", "unknown option \"-j\""},
        {"status --js", "unknown option \"--js\""},
        {"status now", "unexpected argument \"now\""},
        {"focus a b", "unexpected argument \"b\""},
        {"focus", "focus needs a name"},
        {"settings set", "settings set needs a name"},
        {"status --json=yes", "--json takes no value"},
        {"--help=status", "--help takes no value"},
        {"focus api --json", "focus does not take --json"},
        {"status --watch", "status does not take --watch"},
        {"menu --watch --json", "--watch and --json exclude each other"},
        {"status --now", "--now needs a value"},
        {"status --status-file=", "--status-file needs a path"},
        {"status --now today", "--now is not an ISO 8601 time stamp: \"today\""},
        {"status --now=2025-03-04T10:15:30", "--now is not an ISO 8601 time stamp: \"2025-03-04T10:15:30\""},
        {"status --now=2025-02-30T10:15:30Z", "--now is not an ISO 8601 time stamp: \"2025-02-30T10:15:30Z\""},
        {"status --time-zone Mars/Olympus", "--time-zone is not the name of a time zone: \"Mars/Olympus\""},
        {"status --time-zone=", "--time-zone is not the name of a time zone: \"\""},
        {"status -- --json", "unexpected argument \"--json\""},
    };
    for (const auto& [line, message] : cases) {
        EXPECT_EQ(errorOf(words(line)), message) << line;
    }
    EXPECT_EQ(errorOf({""}), "unknown command \"\"");
    EXPECT_EQ(errorOf({"settings", "get", ""}), "settings get needs a name");
}

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
