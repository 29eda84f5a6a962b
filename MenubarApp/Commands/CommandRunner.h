#pragma once

#include "MenubarApp/Commands/log.h"
#include "MenubarCore/System/Environment.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace menubar {

class MainLoop;

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

/// Every outside program is started here: from an executable path and a list of arguments, never through a shell, so
/// that nothing is ever quoted or looked up. The child's environment is this process's, overlaid with
/// `extraEnvironment`; its standard input is the null device.
///
/// Each run logs one line: "ok: " + the command line, or "exit " + status + ": " + the command line and, when the
/// child wrote to standard error, " -- " + that text; or "failed to launch " + the executable + ": " + the system's
/// reason, which is then the result's `stderr_` too.
///
/// A child that has ended while another process (its own child, say) still holds one of its outputs open is given
/// ChildProcess::outputGrace for what is on its way; then the run is over with what was read. Of each output the first
/// ChildProcess::maximumOutput bytes count.
///
/// No state; any number of runs at once.
namespace CommandRunner {

/// Blocks until the child has ended. Any thread but the main one of an app.
[[nodiscard]] CommandResult runSync(const std::string& executable, const std::vector<std::string>& arguments,
                                    const Environment& extraEnvironment = {}, const Log& log = menubar::log);

/// Returns at once; the command runs in the background, and `completion` (unless empty) gets its result on the main
/// thread. The main loop outlives the run. Any thread.
void run(MainLoop& mainLoop, std::string executable, std::vector<std::string> arguments, Environment extraEnvironment,
         CommandCompletion completion, Log log = menubar::log);

} // namespace CommandRunner

} // namespace menubar
