#pragma once

#include "MenubarCore/Text/EnumTexts.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace menubar::ctl {

/// The whole language of the command line, as data: parsing, help, completions and "did you mean" read these tables,
/// and nothing else in the program spells a command or an option.

/// What the person asks for.
enum class Command {
    status,
    menu,
    sessions,
    focus,
    bar,
    settingsList,
    settingsGet,
    settingsSet,
    settingsReset,
    daemonStatus,
    daemonStart,
    daemonStop,
    daemonRestart,
    loginStatus,
    loginOn,
    loginOff,
    doctor,
    completions,
    help,
    version,
    complete, ///< what the completion scripts ask; not shown
};

enum class Option { json, watch, check, waiting, statusFile, now, timeZone, color, verbose, help, version };

/// What a command takes besides its own words.
enum class Operands {
    none,
    setting,          ///< the name of one
    settingAndValues, ///< the name, and any number of VALUEs
    session,          ///< the name of one, or the option `waiting` in its place
    barFormat,
    shell,
    topic, ///< any number of words
    words, ///< any number of words, of which none is an option
};

/// The status bars that `bar` writes for.
enum class BarFormat { plain, tmux, waybar, polybar, swiftbar };

/// The shells that `completions` writes for.
enum class Shell { bash, zsh, fish };

/// When text is coloured.
enum class ColorChoice { automatic, always, never };

} // namespace menubar::ctl

namespace menubar {

// Their words.

template <>
inline constexpr auto enumTexts<ctl::BarFormat> =
    std::to_array<std::string_view>({"plain", "tmux", "waybar", "polybar", "swiftbar"});

template <>
inline constexpr auto enumTexts<ctl::Shell> = std::to_array<std::string_view>({"bash", "zsh", "fish"});

template <>
inline constexpr auto enumTexts<ctl::ColorChoice> = std::to_array<std::string_view>({"auto", "always", "never"});

} // namespace menubar

namespace menubar::ctl {

/// Some of the options.
class OptionSet {
public:
    constexpr OptionSet(std::initializer_list<Option> options) {
        for (const Option option : options) {
            m_bits |= bit(option);
        }
    }

    [[nodiscard]] constexpr bool contains(Option option) const { return (m_bits & bit(option)) != 0; }

private:
    static constexpr std::uint32_t bit(Option option) { return std::uint32_t{1} << static_cast<unsigned>(option); }

    std::uint32_t m_bits = 0;
};

struct CommandSpec {
    Command command;
    std::string_view words; ///< "settings list"; empty for what only an option asks for
    Operands operands = Operands::none;
    OptionSet options{};        ///< besides those that every command takes
    bool isExclusive = false;   ///< at most one of these options at a time
    std::string_view summary{}; ///< half a line; empty for a command that is not shown
    std::string_view details{}; ///< of its page: lines of at most 80 columns, each with its line feed
};

struct OptionSpec {
    Option option;
    std::string_view name;      ///< "--json"
    std::string_view letter{};  ///< "-h", or empty
    std::string_view value{};   ///< what its value is called, "PATH"; empty for an option that takes none
    std::string_view summary{}; ///< lines for its place in a page; the first has at most 54 columns
    bool isCommon = true;       ///< whether every command takes it
};

/// Of the commands whose first word is the same.
struct CommandGroup {
    std::string_view word;
    std::string_view summary;
};

[[nodiscard]] std::span<const CommandSpec> commandTable();
[[nodiscard]] std::span<const OptionSpec> optionTable();
[[nodiscard]] std::span<const CommandGroup> commandGroups();

[[nodiscard]] const CommandSpec& specOf(Command command);
[[nodiscard]] const OptionSpec& specOf(Option option);

/// Whether every command takes it.
[[nodiscard]] inline bool isCommon(Option option) {
    return specOf(option).isCommon;
}

/// The command whose words these begin with; null when there is none.
[[nodiscard]] const CommandSpec* commandOf(std::span<const std::string> words);

/// The option's table row by name or letter; null for a text that names none.
[[nodiscard]] const OptionSpec* optionNamed(std::string_view text);

/// "ostrel-menubarctl menu [--json | --watch] [OPTIONS]"
[[nodiscard]] std::string synopsis(const CommandSpec& spec);

/// The enumerator that has `word` for its text; absent when none has.
template <TextEnumeration E>
[[nodiscard]] std::optional<E> choice(std::string_view word) {
    const E value = enumeratorOf<E>(word);
    return rawText(value) == word ? std::optional(value) : std::nullopt;
}

/// The one of `known` that a person who typed `word` is likely to have meant: a slip or two away. Absent where none is
/// near, or where it is `word` itself. Of several the first of the nearest.
[[nodiscard]] std::optional<std::string_view> nearestWord(std::string_view word,
                                                          std::span<const std::string_view> known);

/// Every first word of a command that is shown, each once.
[[nodiscard]] std::vector<std::string_view> firstWords();

/// What may follow that first word to make a command; empty where it is a command by itself.
[[nodiscard]] std::vector<std::string_view> secondWords(std::string_view first);

} // namespace menubar::ctl
