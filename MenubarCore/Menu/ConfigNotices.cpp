#include "MenubarCore/Menu/ConfigNotices.h"

#include <algorithm>

namespace menubar {

std::string ConfigNotice::menuLine() const {
    const Error* const error = configError();
    return error == nullptr ? std::string(ConfigNotices::restartNeededLine) : "Config file ignored: " + error->message;
}

namespace ConfigNotices {

std::vector<ConfigNotice> notices(const StatusFile* status, const DaemonState& state) {
    const bool isAlive = state.kind() == DaemonState::Case::running || state.kind() == DaemonState::Case::stale;
    if (status == nullptr || !isAlive) {
        return {};
    }
    std::vector<ConfigNotice> result;
    if (const auto& error = status->configError; error && error->message && !error->message->empty()) {
        result.emplace_back(ConfigNotice::Error{.message = *error->message, .path = error->path});
    }
    if (state.isRunning() && status->configChangedSinceLoad()) {
        result.emplace_back(ConfigNotice::RestartNeeded{});
    }
    return result;
}

bool restartNeeded(const StatusFile* status, const DaemonState& state) {
    return std::ranges::any_of(notices(status, state),
                               [](const ConfigNotice& notice) { return notice.configError() == nullptr; });
}

std::optional<ConfigNotice::Error> configError(const StatusFile* status, const DaemonState& state) {
    for (const ConfigNotice& notice : notices(status, state)) {
        if (const ConfigNotice::Error* const error = notice.configError()) {
            return *error;
        }
    }
    return std::nullopt;
}

} // namespace ConfigNotices

} // namespace menubar
