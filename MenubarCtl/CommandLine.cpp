#include "MenubarCtl/CommandLine.h"

#include "MenubarApp/Platform/ZoneDatabase.h"
#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCore/Text/Quoted.h"
#include "MenubarCore/Text/Timestamp.h"

#include <array>
#include <cstddef>
#include <utility>

namespace menubar::ctl {

namespace {

/// How many words besides its own a command takes.
enum class Operands { none, name, nameAndValues };

struct CommandSpec {
    Command command;
    std::string_view first;
    std::string_view second{}; ///< empty for a command of one word
    Operands operands = Operands::none;
    bool takesJSON = false;
    bool takesWatch = false;
};

constexpr std::array commands{
    CommandSpec{.command = Command::status, .first = "status", .takesJSON = true},
    CommandSpec{.command = Command::menu, .first = "menu", .takesJSON = true, .takesWatch = true},
    CommandSpec{.command = Command::settingsList, .first = "settings", .second = "list", .takesJSON = true},
    CommandSpec{.command = Command::settingsGet, .first = "settings", .second = "get", .operands = Operands::name},
    CommandSpec{
        .command = Command::settingsSet, .first = "settings", .second = "set", .operands = Operands::nameAndValues},
    CommandSpec{.command = Command::settingsReset, .first = "settings", .second = "reset", .operands = Operands::name},
    CommandSpec{.command = Command::focus, .first = "focus", .operands = Operands::name},
    CommandSpec{.command = Command::daemonStart, .first = "daemon", .second = "start"},
    CommandSpec{.command = Command::daemonStop, .first = "daemon", .second = "stop"},
    CommandSpec{.command = Command::daemonRestart, .first = "daemon", .second = "restart"},
    CommandSpec{.command = Command::loginOn, .first = "login", .second = "on"},
    CommandSpec{.command = Command::loginOff, .first = "login", .second = "off"},
    CommandSpec{.command = Command::loginStatus, .first = "login", .second = "status"},
};

std::unexpected<UsageError> wrong(const std::string& message) {
    return std::unexpected(UsageError{displayText(message)});
}

class Parser {
public:
    explicit Parser(std::span<const std::string> arguments) : m_arguments(arguments) {}

    std::expected<CommandLine, UsageError> parse();

private:
    using Outcome = std::expected<void, UsageError>;

    Outcome readOption(std::string_view argument);
    Outcome setValueOption(std::string_view name, const std::string& value);
    [[nodiscard]] bool expectsValue() const;

    [[nodiscard]] bool isDone() const { return m_isDone; }

    Outcome interpretWords();
    Outcome takeOperands(const CommandSpec& spec, std::span<const std::string> operands);

    std::span<const std::string> m_arguments;
    std::size_t m_next = 0;
    std::vector<std::string> m_words;
    CommandLine m_line;
    bool m_isDone = false; // --help or --version was met
};

std::expected<CommandLine, UsageError> Parser::parse() {
    bool optionsEnded = false;
    while (m_next < m_arguments.size() && !m_isDone) {
        const std::string& argument = m_arguments[m_next++];
        const bool looksLikeOption = argument.size() > 1 && argument.front() == '-';
        const bool isValue = expectsValue() && !argument.starts_with("--");
        if (optionsEnded || !looksLikeOption || isValue) {
            m_words.push_back(argument);
        } else if (argument == "--") {
            optionsEnded = true;
        } else if (auto outcome = readOption(argument); !outcome) {
            return std::unexpected(std::move(outcome.error()));
        }
    }
    if (!m_isDone) {
        if (auto outcome = interpretWords(); !outcome) {
            return std::unexpected(std::move(outcome.error()));
        }
    }
    return std::move(m_line);
}

/// Whether the next word is a VALUE of `settings set NAME`.
bool Parser::expectsValue() const {
    return m_words.size() >= 3 && m_words[0] == "settings" && m_words[1] == "set";
}

Parser::Outcome Parser::readOption(std::string_view argument) {
    const std::size_t equals = argument.find('=');
    const std::string_view name = argument.substr(0, equals);
    const std::array<std::pair<std::string_view, bool*>, 3> flags{
        {{"--json", &m_line.json}, {"--watch", &m_line.watch}, {"--verbose", &m_line.verbose}}};
    const bool isHelp = name == "--help";
    bool isFlag = isHelp || name == "--version";
    for (const auto& [flagName, flag] : flags) {
        if (name == flagName) {
            *flag = true;
            isFlag = true;
        }
    }
    if (isFlag) {
        if (equals != std::string_view::npos) {
            return wrong(std::string(name) + " takes no value");
        }
        if (isHelp || name == "--version") {
            m_line.command = isHelp ? Command::help : Command::version;
            m_isDone = true;
        }
        return {};
    }
    if (name != "--status-file" && name != "--now" && name != "--time-zone") {
        return wrong("unknown option " + quoted(argument));
    }
    if (equals != std::string_view::npos) {
        return setValueOption(name, std::string(argument.substr(equals + 1)));
    }
    if (m_next == m_arguments.size()) {
        return wrong(std::string(name) + " needs a value");
    }
    return setValueOption(name, m_arguments[m_next++]);
}

Parser::Outcome Parser::setValueOption(std::string_view name, const std::string& value) {
    if (name == "--status-file") {
        if (value.empty()) {
            return wrong("--status-file needs a path");
        }
        m_line.statusFile = value;
        return {};
    }
    if (name == "--now") {
        m_line.now = parseTimestamp(value);
        return m_line.now ? Outcome() : wrong("--now is not an ISO 8601 time stamp: " + quoted(value));
    }
    if (!ZoneDatabase::holds(value)) {
        const bool isThere = ZoneDatabase::holds("UTC");
        return wrong("--time-zone is not the name of a time zone: " + quoted(value) +
                     (isThere ? "" : "; there is no zone database in " + quoted(ZoneDatabase::directory())));
    }
    m_line.timeZone = value;
    return {};
}

Parser::Outcome Parser::interpretWords() {
    if (m_words.empty()) {
        return wrong("a command is missing");
    }
    bool isKnownGroup = false;
    for (const CommandSpec& spec : commands) {
        if (m_words[0] != spec.first) {
            continue;
        }
        isKnownGroup = true;
        const std::size_t ownWords = spec.second.empty() ? 1 : 2;
        if (ownWords == 1 || (m_words.size() > 1 && m_words[1] == spec.second)) {
            return takeOperands(spec, std::span(m_words).subspan(ownWords));
        }
    }
    if (!isKnownGroup) {
        return wrong("unknown command " + quoted(m_words[0]));
    }
    return m_words.size() == 1 ? wrong(m_words[0] + " needs to be told what to do")
                               : wrong("unknown command " + quoted(m_words[0] + " " + m_words[1]));
}

Parser::Outcome Parser::takeOperands(const CommandSpec& spec, std::span<const std::string> operands) {
    const std::string command(words(spec.command));
    const std::size_t required = spec.operands == Operands::none ? 0 : 1;
    if (operands.size() < required || (required == 1 && operands[0].empty())) {
        return wrong(command + " needs a name");
    }
    if (operands.size() > required && spec.operands != Operands::nameAndValues) {
        return wrong("unexpected argument " + quoted(operands[required]));
    }
    if (m_line.json && !spec.takesJSON) {
        return wrong(command + " does not take --json");
    }
    if (m_line.watch && !spec.takesWatch) {
        return wrong(command + " does not take --watch");
    }
    if (m_line.watch && m_line.json) {
        return wrong("--watch and --json exclude each other");
    }
    m_line.command = spec.command;
    if (required == 1) {
        m_line.name = operands[0];
        m_line.values.assign(operands.begin() + 1, operands.end());
    }
    return {};
}

} // namespace

std::string_view words(Command command) {
    switch (command) {
    case Command::help: return "--help";
    case Command::version: return "--version";
    case Command::status: return "status";
    case Command::menu: return "menu";
    case Command::settingsList: return "settings list";
    case Command::settingsGet: return "settings get";
    case Command::settingsSet: return "settings set";
    case Command::settingsReset: return "settings reset";
    case Command::focus: return "focus";
    case Command::daemonStart: return "daemon start";
    case Command::daemonStop: return "daemon stop";
    case Command::daemonRestart: return "daemon restart";
    case Command::loginOn: return "login on";
    case Command::loginOff: return "login off";
    case Command::loginStatus: return "login status";
    }
    return "";
}

std::expected<CommandLine, UsageError> parseCommandLine(std::span<const std::string> arguments) {
    return Parser(arguments).parse();
}

std::string_view usageText() {
    return "usage: ostrel-menubarctl status [--json] [OPTIONS]\n"
           "       ostrel-menubarctl menu [--json | --watch] [OPTIONS]\n"
           "       ostrel-menubarctl settings list [--json] [OPTIONS]\n"
           "       ostrel-menubarctl settings get NAME [OPTIONS]\n"
           "       ostrel-menubarctl settings set NAME VALUE... [OPTIONS]\n"
           "       ostrel-menubarctl settings reset NAME [OPTIONS]\n"
           "       ostrel-menubarctl focus NAME [OPTIONS]\n"
           "       ostrel-menubarctl daemon start|stop|restart\n"
           "       ostrel-menubarctl login on|off|status\n"
           "       ostrel-menubarctl --help | --version\n";
}

std::string helpText() {
    return std::string(usageText()) +
           "\n"
           "Shows and does in a terminal what the ostrel-menubar item does with a mouse.\n"
           "\n"
           "Commands:\n"
           "  status             what the menu-bar item shows, and how the daemon is doing\n"
           "  menu               the item's menu; with --watch redrawn every 3 seconds until interrupted\n"
           "  settings list      the daemon's settings, their values and where those come from\n"
           "  settings get       one setting's value, as settings set takes it; a list item by item\n"
           "  settings set       change a setting: on or off, a number, the items of a list (none empties\n"
           "                     it), or a text; the daemon validates the file before it is written\n"
           "  settings reset     remove a setting from the config file, back to its default\n"
           "  focus              bring a session's terminal forward; NAME is its session id, short id or\n"
           "                     display name\n"
           "  daemon             start, stop or restart the daemon\n"
           "  login              start the app at login, or no longer, or tell whether it does; macOS only,\n"
           "                     and only for the program in the app's bundle or a link to it\n"
           "\n"
           "Options:\n"
           "  --json             print one JSON document instead of text for people\n"
           "  --status-file PATH the daemon's status file (else OSTREL_STATUS_FILE, else\n"
           "                     ~/.local/state/ostrel/status.json)\n"
           "  --now TIMESTAMP    pretend that it is this time, ISO 8601 with a zone (else the clock)\n"
           "  --time-zone NAME   show times of day in this zone, for example Asia/Kathmandu (else the\n"
           "                     local one)\n"
           "  --verbose          diagnostic lines on standard error\n"
           "  --                 what follows are no options\n"
           "\n"
           "Exit status: 0 done, 1 what was asked for failed, 2 the command line is wrong.\n";
}

} // namespace menubar::ctl
