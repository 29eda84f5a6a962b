#pragma once

#include <string>
#include <string_view>

namespace menubar {

/// The daemon's launch agent: the service's name and the stem of its property list.
inline constexpr std::string_view LaunchAgentLabel = "dev.ostrel.daemon"; // NOLINT(readability-identifier-naming)

/// `home` + "/Library/LaunchAgents/" + label + ".plist", by plain concatenation.
[[nodiscard]] inline std::string launchAgentPlistPath(std::string_view home) {
    std::string path(home);
    path += "/Library/LaunchAgents/";
    path += LaunchAgentLabel;
    path += ".plist";
    return path;
}

} // namespace menubar
