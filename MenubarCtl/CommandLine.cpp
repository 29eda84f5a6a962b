#include "MenubarCtl/CommandLine.h"

#include "MenubarApp/Platform/ZoneDatabase.h"
#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCore/Text/Join.h"
#include "MenubarCore/Text/Timestamp.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace menubar::ctl {

namespace {

using Outcome = std::expected<void, UsageError>;
using Names = std::span<const std::string_view>;

/// ", did you mean ...?", or nothing.
std::string suggestion(std::string_view word, Names known, std::string_view before = {}) {
    const auto near = nearestWord(word, known);
    return near ? "; did you mean \"" + std::string(before) + std::string(*near) + "\"?" : "";
}

class Parser {
public:
    explicit Parser(std::span<const std::string> arguments) : m_arguments(arguments) {}

    std::expected<CommandLine, UsageError> parse();

private:
    /// About what has been understood so far.
    [[nodiscard]] std::unexpected<UsageError> wrong(const std::string& message) const {
        return std::unexpected(UsageError{.message = displayText(message), .topic = m_topic});
    }

    Outcome readOption(const std::string& argument);
    Outcome setValueOption(const OptionSpec& spec, const std::string& value);
    void setFlag(Option option);
    [[nodiscard]] bool expectsValue() const;
    [[nodiscard]] std::vector<std::string_view> optionNames() const;

    Outcome interpretWords();
    Outcome takeTopic(std::span<const std::string> words);
    [[nodiscard]] std::unexpected<UsageError> unknownCommand() const;
    Outcome checkOptions(const CommandSpec& spec);
    Outcome takeOperands(const CommandSpec& spec, std::span<const std::string> operands);
    template <typename Choice>
    Outcome takeChoice(Choice& taken, const std::string& kind, std::span<const std::string> operands);

    std::span<const std::string> m_arguments;
    std::size_t m_next = 0;
    std::vector<std::string> m_words;
    std::vector<Option> m_given;
    std::string m_topic; // the words of the command, once they are known
    CommandLine m_line;
    bool m_asksForHelp = false;
    bool m_isDone = false; // --version was met
};

std::expected<CommandLine, UsageError> Parser::parse() {
    bool optionsEnded = false;
    while (m_next < m_arguments.size() && !m_isDone && !m_asksForHelp) {
        const std::string& argument = m_arguments[m_next++];
        const bool looksLikeOption = argument.size() > 1 && argument.front() == '-';
        const bool isValue = expectsValue() && !argument.starts_with("--");
        if (optionsEnded || !looksLikeOption || isValue) {
            m_words.push_back(argument);
            if (const CommandSpec* spec = commandOf(m_words)) {
                m_topic = spec->summary.empty() ? "" : spec->words;
            }
        } else if (argument == "--") {
            optionsEnded = true;
        } else if (auto outcome = readOption(argument); !outcome) {
            return std::unexpected(std::move(outcome.error()));
        }
    }
    if (!m_isDone) {
        auto outcome = m_asksForHelp ? takeTopic(m_words) : interpretWords();
        if (!outcome) {
            return std::unexpected(std::move(outcome.error()));
        }
    }
    return std::move(m_line);
}

/// Whether the next word is a VALUE of `settings set NAME`.
bool Parser::expectsValue() const {
    const CommandSpec* spec = commandOf(m_words);
    return m_words.size() >= 3 && spec != nullptr && spec->operands == Operands::settingAndValues;
}

std::vector<std::string_view> Parser::optionNames() const {
    std::vector<std::string_view> names;
    for (const OptionSpec& spec : optionTable()) {
        names.push_back(spec.name);
    }
    return names;
}

Outcome Parser::readOption(const std::string& argument) {
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const OptionSpec* spec = optionNamed(name);
    if (spec == nullptr) {
        return wrong("unknown option " + quoted(argument) + suggestion(name, optionNames()));
    }
    if (spec->value.empty()) {
        if (equals != std::string::npos) {
            return wrong(name + " takes no value");
        }
        setFlag(spec->option);
        return {};
    }
    if (equals != std::string::npos) {
        return setValueOption(*spec, argument.substr(equals + 1));
    }
    if (m_next == m_arguments.size()) {
        return wrong(name + " needs a value");
    }
    return setValueOption(*spec, m_arguments[m_next++]);
}

void Parser::setFlag(Option option) {
    using Flag = std::pair<Option, bool CommandLine::*>;
    constexpr std::array flags{Flag(Option::json, &CommandLine::json), Flag(Option::watch, &CommandLine::watch),
                               Flag(Option::check, &CommandLine::check), Flag(Option::waiting, &CommandLine::waiting),
                               Flag(Option::verbose, &CommandLine::verbose)};
    m_given.push_back(option);
    if (const auto* const found = std::ranges::find(flags, option, &Flag::first); found != flags.end()) {
        m_line.*found->second = true;
    }
    m_asksForHelp = option == Option::help;
    m_isDone = option == Option::version;
    m_line.command = m_isDone ? Command::version : m_line.command;
}

Outcome Parser::setValueOption(const OptionSpec& spec, const std::string& value) {
    const std::string name(spec.name);
    switch (spec.option) {
    case Option::statusFile:
        m_line.statusFile = value;
        return value.empty() ? wrong(name + " needs a path") : Outcome();
    case Option::now:
        m_line.now = parseTimestamp(value);
        return m_line.now ? Outcome() : wrong(name + " is not an ISO 8601 time stamp: " + quoted(value));
    case Option::timeZone:
        m_line.timeZone = value;
        if (!ZoneDatabase::holds(value)) {
            const bool isThere = ZoneDatabase::holds("UTC");
            return wrong(name + " is not the name of a time zone: " + quoted(value) +
                         (isThere ? "" : "; there is no zone database in " + quoted(ZoneDatabase::directory())));
        }
        return {};
    case Option::color:
        m_line.color = choice<ColorChoice>(value).value_or(ColorChoice::automatic);
        return choice<ColorChoice>(value) ? Outcome()
                                          : wrong(name + " is none of " + joined(enumTexts<ColorChoice>, ", ") + ": " +
                                                  quoted(value) + suggestion(value, enumTexts<ColorChoice>));
    case Option::json:
    case Option::watch:
    case Option::check:
    case Option::waiting:
    case Option::verbose:
    case Option::help:
    case Option::version: break; // flags
    }
    return {};
}

/// `help` is about a command, or about all that begin with the same word.
Outcome Parser::takeTopic(std::span<const std::string> words) {
    m_line.command = Command::help;
    if (words.empty()) {
        return {};
    }
    if (const CommandSpec* spec = commandOf(words); spec != nullptr && !spec->summary.empty()) {
        m_line.topic = spec->words;
        return {};
    }
    if (words.size() == 1 && !secondWords(words[0]).empty()) {
        m_line.topic = words[0];
        return {};
    }
    m_words.assign(words.begin(), words.end());
    return unknownCommand();
}

std::unexpected<UsageError> Parser::unknownCommand() const {
    const std::string& first = m_words[0];
    const auto second = secondWords(first);
    if (second.empty()) {
        return wrong("unknown command " + quoted(first) + suggestion(first, firstWords()));
    }
    UsageError error{.message = first + " needs to be told what to do: " + joined(second, ", "), .topic = first};
    if (m_words.size() > 1) {
        error.message = displayText("unknown command " + quoted(first + " " + m_words[1]) +
                                    suggestion(m_words[1], second, first + " "));
    }
    return std::unexpected(std::move(error));
}

Outcome Parser::interpretWords() {
    if (m_words.empty()) {
        return wrong("a command is missing");
    }
    const CommandSpec* spec = commandOf(m_words);
    if (spec == nullptr) {
        return unknownCommand();
    }
    m_line.command = spec->command;
    if (auto outcome = checkOptions(*spec); !outcome) {
        return outcome;
    }
    const std::size_t ownWords = spec->words.contains(' ') ? 2 : 1;
    return takeOperands(*spec, std::span(m_words).subspan(ownWords));
}

Outcome Parser::checkOptions(const CommandSpec& spec) {
    const OptionSpec* first = nullptr;
    for (const Option option : m_given) {
        const OptionSpec& given = specOf(option);
        if (isCommon(option)) {
            continue;
        }
        if (!spec.options.contains(option)) {
            return wrong(std::string(spec.words) + " does not take " + std::string(given.name));
        }
        if (spec.isExclusive && first != nullptr && first != &given) {
            return wrong(std::string(first->name) + " and " + std::string(given.name) + " exclude each other");
        }
        first = &given;
    }
    return {};
}

Outcome Parser::takeOperands(const CommandSpec& spec, std::span<const std::string> operands) {
    std::size_t required = 0;
    bool takesMore = false;
    switch (spec.operands) {
    case Operands::none: break;
    case Operands::session: required = m_line.waiting ? 0 : 1; break;
    case Operands::setting: required = 1; break;
    case Operands::settingAndValues:
        required = 1;
        takesMore = true;
        break;
    case Operands::barFormat: return takeChoice(m_line.barFormat, "format", operands);
    case Operands::shell: return takeChoice(m_line.shell, "shell", operands);
    case Operands::topic: return takeTopic(operands);
    case Operands::words: takesMore = true; break;
    }
    if (operands.size() < required || (required == 1 && operands[0].empty())) {
        return wrong(std::string(spec.words) + " needs a name");
    }
    if (operands.size() > required && !takesMore) {
        return wrong("unexpected argument " + quoted(operands[required]));
    }
    if (required == 1) {
        m_line.name = operands[0];
    }
    m_line.values.assign(operands.begin() + static_cast<std::ptrdiff_t>(required), operands.end());
    return {};
}

template <typename Choice>
Outcome Parser::takeChoice(Choice& taken, const std::string& kind, std::span<const std::string> operands) {
    const Names names = enumTexts<Choice>;
    if (operands.empty()) {
        return wrong(m_topic + " needs a " + kind + ": " + joined(names, ", "));
    }
    const auto chosen = choice<Choice>(operands[0]);
    if (!chosen) {
        return wrong("unknown " + kind + " " + quoted(operands[0]) + suggestion(operands[0], names));
    }
    if (operands.size() > 1) {
        return wrong("unexpected argument " + quoted(operands[1]));
    }
    taken = *chosen;
    return {};
}

} // namespace

std::string UsageError::text() const {
    return message + "\ntry: ostrel-menubarctl help" + (topic.empty() ? "" : " " + topic);
}

std::expected<CommandLine, UsageError> parseCommandLine(std::span<const std::string> arguments) {
    return Parser(arguments).parse();
}

} // namespace menubar::ctl
