#pragma once

#include "MenubarCore/Text/Date.h"

#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace menubar::ctl {

/// What the person asks for.
enum class Command {
    help,
    version,
    status,
    menu,
    settingsList,
    settingsGet,
    settingsSet,
    settingsReset,
    focus,
    daemonStart,
    daemonStop,
    daemonRestart,
    loginOn,
    loginOff,
    loginStatus,
};

/// The words that ask for it, "settings list"; "--help" and "--version" for those two.
[[nodiscard]] std::string_view words(Command command);

/// A command line that is right, as far as can be told without looking at any file but the system's zone database.
struct CommandLine {
    Command command = Command::help;
    std::string name;                ///< of the setting or the session; empty where the command takes none
    std::vector<std::string> values; ///< of `settings set`
    bool json = false;
    bool watch = false;
    bool verbose = false;
    std::optional<std::string> statusFile; ///< never empty
    std::optional<Date> now;
    std::optional<std::string> timeZone; ///< in the system's zone database
};

/// What is wrong with a command line: one line for people, safe to show.
struct UsageError {
    std::string message;

    bool operator==(const UsageError&) const = default;
};

/// Reads the arguments after the program's name. Options may stand anywhere, as "--name VALUE" or "--name=VALUE"; of a
/// repeated one the last holds. "--" ends them. Where a VALUE is expected, an argument with a single leading "-" is
/// one.
/// "--help" and "--version" hold as soon as they are met. Pure, but that a zone is looked up in the system's zone
/// database.
[[nodiscard]] std::expected<CommandLine, UsageError> parseCommandLine(std::span<const std::string> arguments);

/// The synopsis, several lines.
[[nodiscard]] std::string_view usageText();

/// What --help prints: the synopsis and what everything means.
[[nodiscard]] std::string helpText();

} // namespace menubar::ctl
