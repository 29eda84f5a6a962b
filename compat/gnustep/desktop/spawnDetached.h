#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace menubar {

/// Starts a program with default signal handling and the null device as its input and output, with this process's
/// standard error and none of its other descriptors, and does not wait for it. The process id, or minus the error
/// number. Any thread.
[[nodiscard]] pid_t spawnDetached(const std::string& program, const std::vector<std::string>& arguments);

/// Whether the child has ended, and is no more; asked again after that, it says so too.
[[nodiscard]] bool hasEnded(pid_t child);

} // namespace menubar
