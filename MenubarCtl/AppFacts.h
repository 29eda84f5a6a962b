#pragma once

#include <string>
#include <vector>

namespace menubar::ctl {

/// An app of ours that runs now.
struct RunningApp {
    std::string path;    ///< of its executable
    std::string version; ///< of its bundle; empty when that does not tell

    bool operator==(const RunningApp&) const = default;
};

/// Whether this system has apps to look for. The build selects the system's way.
[[nodiscard]] bool canFindApps();

/// The app's processes of this user.
[[nodiscard]] std::vector<RunningApp> runningApps();

} // namespace menubar::ctl
