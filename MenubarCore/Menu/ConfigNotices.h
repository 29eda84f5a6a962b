#pragma once

#include "MenubarCore/Menu/DaemonState.h"
#include "MenubarCore/Status/StatusFile.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace menubar {

/// Something the person should know about the daemon's config file.
class ConfigNotice {
public:
    struct Error {
        std::string message;
        std::optional<std::string> path;
        bool operator==(const Error&) const = default;
    };

    /// The daemon runs on an older reading of the file.
    struct RestartNeeded {
        bool operator==(const RestartNeeded&) const = default;
    };

    using Storage = std::variant<Error, RestartNeeded>;

    ConfigNotice(Error error) : m_storage(std::move(error)) {}

    ConfigNotice(RestartNeeded notice) : m_storage(notice) {}

    [[nodiscard]] const Storage& storage() const& { return m_storage; }

    /// The details of a config error, null for `restartNeeded`.
    [[nodiscard]] const Error* configError() const& { return std::get_if<Error>(&m_storage); }

    const Error* configError() && = delete;

    [[nodiscard]] std::string menuLine() const;

    bool operator==(const ConfigNotice&) const = default;

private:
    Storage m_storage;
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
