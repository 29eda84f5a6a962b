#pragma once

#include "MenubarCore/System/Environment.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <vector>

namespace menubar {

/// One child process from launch to end: what CommandRunner is made of.
namespace ChildProcess {

/// How long output is awaited after the child's own end, when another process (one that the child left behind) still
/// holds a pipe open. What the child itself wrote has been read by then.
inline constexpr std::chrono::milliseconds outputGrace{250};

/// How often a child that keeps its pipes open is asked whether it has ended.
inline constexpr std::chrono::milliseconds exitCheckInterval{50};

/// What is kept of each output. The rest is read and dropped, so that no child can exhaust the memory of the app.
inline constexpr std::size_t maximumOutput = std::size_t{32} << 20;

/// The bytes that a child wrote, and how it ended: its exit status, or the number of the signal that ended it.
struct Result {
    std::int32_t status = 0;
    std::string standardOutput;
    std::string standardError;
    bool isOverdue = false; ///< it was killed at its limit
};

/// At which step the system refused, with its error number.
struct Failure {
    enum class Step { launch, wait };

    Step step = Step::launch;
    int error = 0;
};

/// Starts the executable and blocks until it has ended. The path is used as given: no PATH, no shell, not even for a
/// file that the system cannot execute. `arguments` does not hold the program's name. Standard input is the null
/// device; of this process's descriptors the child gets none; signals are unblocked and have their default effects. No
/// zombie and no descriptor is left behind; where this process ignores SIGCHLD, it no longer does. Texts that hold a
/// NUL cannot be passed on: launch failure EINVAL. Any thread, any number at once.
///
/// With a limit the child leads a process group of its own, which is killed when that much time has passed.
[[nodiscard]] std::expected<Result, Failure> run(const std::string& executable,
                                                 const std::vector<std::string>& arguments,
                                                 const Environment& environment,
                                                 std::optional<std::chrono::milliseconds> limit = {});

} // namespace ChildProcess

} // namespace menubar
