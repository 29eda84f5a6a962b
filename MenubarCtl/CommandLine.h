#pragma once

#include "MenubarCore/Text/Date.h"
#include "MenubarCtl/CommandTable.h"

#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace menubar::ctl {

/// A command line that is right, as far as can be told without looking at any file but the system's zone database.
struct CommandLine {
    Command command = Command::help;
    std::string name;                ///< of the setting or the session; empty where the command takes none
    std::vector<std::string> values; ///< of `settings set`; the words that `complete` gets
    std::string topic;               ///< of `help`: a command's words, or the first of them; empty for all
    BarFormat barFormat = BarFormat::plain;
    Shell shell = Shell::bash;
    bool json = false;
    bool watch = false;
    bool check = false;
    bool waiting = false;
    bool verbose = false;
    ColorChoice color = ColorChoice::automatic;
    std::optional<std::string> statusFile; ///< never empty
    std::optional<Date> now;
    std::optional<std::string> timeZone; ///< in the system's zone database
};

/// What is wrong with a command line.
struct UsageError {
    std::string message; ///< one line for people, safe to show
    std::string topic{}; ///< of the help that tells how it is done right, as in CommandLine

    /// The message, then how to get help: two lines.
    [[nodiscard]] std::string text() const;

    bool operator==(const UsageError&) const = default;
};

/// Reads the arguments after the program's name. Options may stand anywhere, as "--name VALUE" or "--name=VALUE"; of a
/// repeated one the last holds. "--" ends them. Where a VALUE is expected, an argument with a single leading "-" is
/// one.
/// "--help" and "--version" hold as soon as they are met; help is about the words before it. Pure, but that a zone is
/// looked up in the system's zone database.
[[nodiscard]] std::expected<CommandLine, UsageError> parseCommandLine(std::span<const std::string> arguments);

} // namespace menubar::ctl
