#pragma once

#include "MenubarCore/Daemon/ExecutableLocator.h"
#include "MenubarCore/Daemon/PropertyList.h"
#include "MenubarCore/System/Environment.h"

#include <array>
#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace menubar {

/// How the daemon's command line is reached: the executable, and the arguments with which the daemon itself is run
/// (flags that select another state directory, say) and which any subcommand must follow.
///
/// Pure but for the functions that are passed in. Any thread.
struct LaunchAgentCommand {
    /// Where the command was found.
    enum class Origin { environment, launchAgent, path };

    /// What a property list that could be read lacks.
    enum class ParseError { notAPlist, missingProgramArguments };

    /// Why a launch agent's property list gives no command; the reader's own error when it could not be read at all.
    using ParseFailure = std::variant<ParseError, PropertyListError>;

    /// The bytes of the file at a path; nothing when it is missing or cannot be read.
    using ReadFile = std::function<std::optional<std::string>(const std::string&)>;

    static constexpr std::string_view environmentKey = "OSTREL_CLI";
    static constexpr std::string_view executableName = "ostrel";
    static constexpr std::array<std::string_view, 2> candidates{"/opt/homebrew/bin/ostrel", "/usr/local/bin/ostrel"};

    std::string executable;
    /// Empty unless the origin is `launchAgent`.
    std::vector<std::string> leadingArguments;
    Origin origin = Origin::path;

    /// The variable's path (a leading tilde stands for `home`), else the launch agent's command, else a candidate or a
    /// directory of PATH: the first whose executable exists. What cannot be used is passed over in silence.
    [[nodiscard]] static std::optional<LaunchAgentCommand> resolve(const Environment& environment,
                                                                   std::string_view home, const std::string& plistPath,
                                                                   const ReadFile& readFile,
                                                                   const ExecutableLocator::Exists& exists);

    /// The command of a launch agent's property list: the program arguments before the first "watch". Without a
    /// "watch" after it the executable stands alone.
    [[nodiscard]] static std::expected<LaunchAgentCommand, ParseFailure> parse(std::string_view plist);

    /// `leadingArguments`, then `subcommand`: what the executable is started with.
    [[nodiscard]] std::vector<std::string> arguments(const std::vector<std::string>& subcommand) const;

    /// The executable and `arguments(subcommand)`, joined by blanks, for people to read.
    [[nodiscard]] std::string describe(const std::vector<std::string>& subcommand) const;

    bool operator==(const LaunchAgentCommand&) const = default;
};

[[nodiscard]] std::string_view description(LaunchAgentCommand::ParseError error);
[[nodiscard]] std::string description(const LaunchAgentCommand::ParseFailure& failure);

} // namespace menubar
