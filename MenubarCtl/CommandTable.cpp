#include "MenubarCtl/CommandTable.h"

#include "MenubarCore/Text/Join.h"

#include <algorithm>
#include <array>

namespace menubar::ctl {

namespace {

constexpr std::string_view program = "ostrel-menubarctl";

constexpr std::array commands{
    CommandSpec{.command = Command::status,
                .words = "status",
                .options = {Option::json, Option::check},
                .summary = "what the menu-bar item shows, and how the daemon is doing",
                .details = "Two lines: the daemon's state, and its settings in short or what to do about\n"
                           "it. Then a line for each notice, the item, its tooltip, the number of sessions,\n"
                           "\"Icon only\" and who decided on it, and the status file.\n"},
    CommandSpec{.command = Command::menu,
                .words = "menu",
                .options = {Option::json, Option::watch},
                .isExclusive = true,
                .summary = "the item's menu, to look at or, with --watch, to use",
                .details = "The item as the menu bar shows it, then its menu, one line an item. On a\n"
                           "terminal lines are cut to its width.\n"
                           "\n"
                           "With --watch the menu is drawn again every 3 seconds. On a terminal it can be\n"
                           "used: the arrow keys (also j, k, Home, End, Page Up and Page Down) move over\n"
                           "the items that can be chosen, Return does what a click does, q ends.\n"
                           "Hand-offs open in $PAGER, or else with the system's opener.\n"},
    CommandSpec{.command = Command::sessions,
                .words = "sessions",
                .options = {Option::json, Option::watch},
                .summary = "every session, one line each, the fullest first",
                .details = "A session's line: its number, the sign of its level, its name, how full its\n"
                           "context is, what it does, and its cache. Numbers go by the order of the menu;\n"
                           "\"focus NUMBER\" takes them.\n"
                           "\n"
                           "With --watch the whole is written again whenever it has changed, until\n"
                           "interrupted; with --json, too, each time one document on one line.\n"},
    CommandSpec{.command = Command::focus,
                .words = "focus",
                .operands = Operands::session,
                .options = {Option::waiting},
                .summary = "bring a session's terminal forward",
                .details = "NAME is a session id, a short id or a name as the menu shows it; else the\n"
                           "number that \"sessions\" shows; else the beginning of an id or a name that only\n"
                           "one session has. What several sessions match is refused, with their names.\n"},
    CommandSpec{.command = Command::bar,
                .words = "bar",
                .operands = Operands::barFormat,
                .options = {Option::watch},
                .summary = "one line for the status bar of another program",
                .details = "A sign, how full the fullest context is, and how many sessions need input:\n"
                           "\"▲ 93% 2 waiting\". The signs are those of the menu-bar item. It never fails;\n"
                           "without a daemon the line is the sign alone. FORMAT is one of:\n"
                           "\n"
                           "  plain     starship, SketchyBar, i3blocks: the text alone\n"
                           "  tmux      set -g status-right \"#(ostrel-menubarctl bar tmux)\"\n"
                           "  waybar    \"custom/ostrel\": {\"exec\": \"ostrel-menubarctl bar waybar --watch\",\n"
                           "            \"return-type\": \"json\"}; the class is ok, warn, critical or muted\n"
                           "  polybar   type = custom/script, exec = ostrel-menubarctl bar polybar --watch,\n"
                           "            tail = true\n"
                           "  swiftbar  a plugin file ostrel.3s.sh that runs it; the menu is below the line\n"},
    CommandSpec{.command = Command::settingsList,
                .words = "settings list",
                .options = {Option::json},
                .summary = "the daemon's settings, their values and their sources",
                .details = "Group by group, one line a setting: its name, its value, whether that is the\n"
                           "default, from the config file or set by a flag of the daemon, and what the\n"
                           "running daemon uses. \"-\" is an empty value.\n"},
    CommandSpec{.command = Command::settingsGet,
                .words = "settings get",
                .operands = Operands::setting,
                .summary = "one setting's value, as \"settings set\" takes it",
                .details = "A list has one line for each item, and an empty one none.\n"},
    CommandSpec{.command = Command::settingsSet,
                .words = "settings set",
                .operands = Operands::settingAndValues,
                .summary = "change a setting in the daemon's config file",
                .details = "VALUE is what the setting takes: on or off (also true, false, yes, no, 1, 0), a\n"
                           "number, a percentage with or without its sign, or a text. A list, and a choice\n"
                           "of several, take one VALUE for each item; an empty list is not stored, so that\n"
                           "the default holds. A VALUE may begin with one \"-\".\n"
                           "\n"
                           "The daemon checks a copy of the file before it is put in place. A daemon that\n"
                           "runs has to be restarted to see it: ostrel-menubarctl daemon restart.\n"},
    CommandSpec{.command = Command::settingsReset,
                .words = "settings reset",
                .operands = Operands::setting,
                .summary = "take a setting out of the file; its default holds then",
                .details = ""},
    CommandSpec{.command = Command::daemonStatus,
                .words = "daemon status",
                .summary = "one line; exit status 0 when the daemon runs, else 1",
                .details = "What the daemon does is judged from its status file.\n"},
    CommandSpec{.command = Command::daemonStart,
                .words = "daemon start",
                .summary = "start the daemon's launch agent; restart it when it runs",
                .details = ""},
    CommandSpec{.command = Command::daemonStop,
                .words = "daemon stop",
                .summary = "stop the daemon's launch agent",
                .details = "A daemon that does not run is as good as stopped: it says so, status 0.\n"},
    CommandSpec{.command = Command::daemonRestart,
                .words = "daemon restart",
                .summary = "stop the daemon and start it again",
                .details = ""},
    CommandSpec{.command = Command::loginStatus,
                .words = "login status",
                .summary = "whether the app starts at login",
                .details = "One line: on, off or waiting for approval. macOS knows an app by its bundle, so\n"
                           "this takes the program that lies in the app, or a link to it.\n"},
    CommandSpec{.command = Command::loginOn,
                .words = "login on",
                .summary = "start the app at login",
                .details = "macOS knows an app by its bundle, so this takes the program that lies in the\n"
                           "app, or a link to it.\n"},
    CommandSpec{
        .command = Command::loginOff, .words = "login off", .summary = "do not start the app at login", .details = ""},
    CommandSpec{.command = Command::doctor,
                .words = "doctor",
                .options = {Option::json},
                .summary = "what keeps the app from working, and what to do about it",
                .details = "Looks at everything that has to be right for the app to work, in the order in\n"
                           "which one thing depends on another. A line each: \"ok\", \"note\" or \"wrong\", what\n"
                           "was found and, where something is to be done, what. Exit status 1 when anything\n"
                           "is wrong. It changes nothing, asks nothing, and ends within ten seconds.\n"},
    CommandSpec{.command = Command::completions,
                .words = "completions",
                .operands = Operands::shell,
                .summary = "a script that completes this command line in a shell",
                .details = "The packages install it. By hand:\n"
                           "\n"
                           "  bash  in ~/.bashrc:  eval \"$(ostrel-menubarctl completions bash)\"\n"
                           "  zsh   in ~/.zshrc, after compinit:\n"
                           "                       eval \"$(ostrel-menubarctl completions zsh)\"\n"
                           "  fish  in ~/.config/fish/config.fish:\n"
                           "                       ostrel-menubarctl completions fish | source\n"},
    CommandSpec{.command = Command::help,
                .words = "help",
                .operands = Operands::topic,
                .summary = "this, or all about one command",
                .details = "The same as --help after the command.\n"},
    CommandSpec{.command = Command::version, .words = ""},
    CommandSpec{.command = Command::complete, .words = "complete", .operands = Operands::words},
};

constexpr std::array options{
    OptionSpec{.option = Option::json,
               .name = "--json",
               .summary = "print one JSON document instead of text for people\n",
               .isCommon = false},
    OptionSpec{.option = Option::watch, .name = "--watch", .summary = "go on until interrupted\n", .isCommon = false},
    OptionSpec{.option = Option::check,
               .name = "--check",
               .summary = "exit status 1 unless the daemon runs and there is no\nnotice\n",
               .isCommon = false},
    OptionSpec{.option = Option::waiting,
               .name = "--waiting",
               .summary = "the first session in menu order that needs input\n",
               .isCommon = false},
    OptionSpec{.option = Option::statusFile,
               .name = "--status-file",
               .value = "PATH",
               .summary =
                   "the daemon's status file (else OSTREL_STATUS_FILE,\nelse ~/.local/state/ostrel/status.json)\n"},
    OptionSpec{.option = Option::now,
               .name = "--now",
               .value = "TIMESTAMP",
               .summary = "pretend that it is this time, ISO 8601 with a zone\n(else the clock)\n"},
    OptionSpec{.option = Option::timeZone,
               .name = "--time-zone",
               .value = "NAME",
               .summary = "show times of day in this zone, for example\nAsia/Kathmandu (else the local one)\n"},
    OptionSpec{.option = Option::color,
               .name = "--color",
               .value = "WHEN",
               .summary = "auto, always or never (else NO_COLOR,\nCLICOLOR_FORCE, else on a terminal)\n"},
    OptionSpec{.option = Option::verbose, .name = "--verbose", .summary = "diagnostic lines on standard error\n"},
    OptionSpec{.option = Option::help, .name = "--help", .letter = "-h", .summary = "print this\n"},
    OptionSpec{.option = Option::version, .name = "--version", .letter = "-V", .summary = "print the version\n"},
};

constexpr std::array groups{
    CommandGroup{.word = "settings", .summary = "the settings in the daemon's config file"},
    CommandGroup{.word = "daemon", .summary = "whether the daemon runs; make it, or stop it"},
    CommandGroup{.word = "login", .summary = "whether macOS starts the app at login; make it, or not"},
};

std::string operandText(const CommandSpec& spec) {
    switch (spec.operands) {
    case Operands::none:
    case Operands::words: return "";
    case Operands::setting: return " NAME";
    case Operands::settingAndValues: return " NAME VALUE...";
    case Operands::session: return " NAME | --waiting";
    case Operands::barFormat: return " FORMAT";
    case Operands::shell: return " " + joined(enumTexts<Shell>, "|");
    case Operands::topic: return " [COMMAND]";
    }
    return "";
}

/// The edit distance: how many letters have to be added, left out, changed or swapped with their neighbour to make one
/// of the other.
std::size_t slips(std::string_view left, std::string_view right) {
    std::vector<std::size_t> beforeLast(right.size() + 1);
    std::vector<std::size_t> last(right.size() + 1);
    std::vector<std::size_t> row(right.size() + 1);
    for (std::size_t j = 0; j <= right.size(); ++j) {
        last[j] = j;
    }
    for (std::size_t i = 1; i <= left.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const bool isSame = left[i - 1] == right[j - 1];
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (isSame ? 0 : 1)});
            if (i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1]) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
        std::swap(beforeLast, last);
        std::swap(last, row);
    }
    return last[right.size()];
}

} // namespace

std::span<const CommandSpec> commandTable() {
    return commands;
}

std::span<const OptionSpec> optionTable() {
    return options;
}

std::span<const CommandGroup> commandGroups() {
    return groups;
}

const CommandSpec& specOf(Command command) {
    return *std::ranges::find(commands, command, &CommandSpec::command);
}

const OptionSpec& specOf(Option option) {
    return *std::ranges::find(options, option, &OptionSpec::option);
}

const CommandSpec* commandOf(std::span<const std::string> words) {
    const std::string one = words.empty() ? "" : words[0];
    const std::string two = words.size() < 2 ? one : one + " " + words[1];
    const auto found = std::ranges::find_if(commands, [&](const CommandSpec& spec) {
        return !spec.words.empty() && (spec.words == one || spec.words == two);
    });
    return found == commands.end() ? nullptr : &*found;
}

const OptionSpec* optionNamed(std::string_view text) {
    const auto found = std::ranges::find_if(options, [&](const OptionSpec& spec) {
        return spec.name == text || (!spec.letter.empty() && spec.letter == text);
    });
    return found == options.end() ? nullptr : &*found;
}

std::string synopsis(const CommandSpec& spec) {
    std::string text = std::string(program) + " " + std::string(spec.words) + operandText(spec);
    std::vector<std::string> own;
    for (const OptionSpec& option : options) {
        if (spec.options.contains(option.option) && spec.operands != Operands::session) {
            own.emplace_back(option.name);
        }
    }
    if (!own.empty()) {
        text += " [" + joined(own, spec.isExclusive ? " | " : "] [") + "]";
    }
    return text + " [OPTIONS]";
}

std::optional<std::string_view> nearestWord(std::string_view word, std::span<const std::string_view> known) {
    constexpr std::size_t longest = 40; // nobody slips into a longer one
    if (word.size() > longest) {
        return std::nullopt;
    }
    std::optional<std::string_view> nearest;
    // One slip in a short word, two in a long one; and more is kept than is changed.
    std::size_t allowed = word.size() < 7 ? 1 : 2;
    for (const std::string_view candidate : known) {
        const std::size_t distance = slips(word, candidate);
        if (distance > 0 && distance <= allowed && 2 * distance < candidate.size()) {
            nearest = candidate;
            allowed = distance - 1;
        }
    }
    return nearest;
}

std::vector<std::string_view> firstWords() {
    std::vector<std::string_view> words;
    for (const CommandSpec& spec : commands) {
        const std::string_view first = spec.words.substr(0, spec.words.find(' '));
        if (!spec.summary.empty() && (words.empty() || words.back() != first)) {
            words.push_back(first);
        }
    }
    return words;
}

std::vector<std::string_view> secondWords(std::string_view first) {
    std::vector<std::string_view> words;
    for (const CommandSpec& spec : commands) {
        const std::size_t blank = spec.words.find(' ');
        if (blank != std::string_view::npos && spec.words.substr(0, blank) == first) {
            words.push_back(spec.words.substr(blank + 1));
        }
    }
    return words;
}

} // namespace menubar::ctl
