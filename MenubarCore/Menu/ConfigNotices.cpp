#include "MenubarCore/Menu/ConfigNotices.h"

#include <algorithm>

namespace menubar {

std::string ConfigNotice::menuLine() const {
    return configError ? "Config file ignored: " + configError->message : std::string(ConfigNotices::restartNeededLine);
}

namespace ConfigNotices {

std::vector<ConfigNotice> notices(const StatusFile* status, const DaemonState& state) {
    const bool isAlive = state.kind() == DaemonState::Case::running || state.kind() == DaemonState::Case::stale;
    if (status == nullptr || !isAlive) {
        return {};
    }
    std::vector<ConfigNotice> result;
    if (const auto& error = status->configError; error && error->message && !error->message->empty()) {
        result.push_back({ConfigNotice::Error{.message = *error->message, .path = error->path}});
    }
    if (state.isRunning() && status->configChangedSinceLoad()) {
        result.emplace_back();
    }
    return result;
}

bool restartNeeded(const StatusFile* status, const DaemonState& state) {
    return std::ranges::count(notices(status, state), ConfigNotice()) > 0;
}

std::optional<ConfigNotice::Error> configError(const StatusFile* status, const DaemonState& state) {
    const std::vector<ConfigNotice> all = notices(status, state);
    return all.empty() ? std::nullopt : all.front().configError;
}

} // namespace ConfigNotices

} // namespace menubar
