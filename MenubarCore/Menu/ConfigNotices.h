#pragma once

#include "MenubarCore/Menu/DaemonState.h"
#include "MenubarCore/Status/StatusFile.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace menubar {

/// Something the person should know about the daemon's config file: an error in it, or else that the daemon runs on an
/// older reading of it and needs a restart.
struct ConfigNotice {
    struct Error {
        std::string message;
        std::optional<std::string> path;
        bool operator==(const Error&) const = default;
    };

    std::optional<Error> configError; ///< absent for the need of a restart

    [[nodiscard]] std::string menuLine() const;

    bool operator==(const ConfigNotice&) const = default;
};

namespace ConfigNotices {

inline constexpr std::string_view restartNeededLine = "Restart daemon to apply settings";

/// The notices to show, config error first. `status` is null when no file is loaded. None unless the daemon is running
/// or stale; `restartNeeded` only when it is running.
[[nodiscard]] std::vector<ConfigNotice> notices(const StatusFile* status, const DaemonState& state);

[[nodiscard]] bool restartNeeded(const StatusFile* status, const DaemonState& state);

/// The first config error of `notices`, or absent.
[[nodiscard]] std::optional<ConfigNotice::Error> configError(const StatusFile* status, const DaemonState& state);

} // namespace ConfigNotices

} // namespace menubar
