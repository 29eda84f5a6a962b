#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace menubar {

/// The outcome of one child process.
struct CommandResult {
    /// The exit status, the number of the signal that ended the child, or `notStarted`.
    std::int32_t status = 0;
    /// What the child wrote to each output: ill-formed UTF-8 replaced by U+FFFD, white space and line breaks trimmed
    /// at both ends. Of a child that could not be started `stderr_` is the reason. (The names without an underscore
    /// are macros of the C library.)
    std::string stdout_;
    std::string stderr_;

    /// The status when there is no child to tell one.
    static constexpr std::int32_t notStarted = -1;

    bool operator==(const CommandResult&) const = default;
};

using CommandCompletion = std::function<void(const CommandResult&)>;

} // namespace menubar
