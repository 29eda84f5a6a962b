#include "MenubarApp/StatusMenu/StatusPoll.h"

#include "MenubarCore/Daemon/LaunchAgentLabel.h"
#include "MenubarCore/Status/StatusFileLocator.h"

#include <span>
#include <utility>

namespace menubar {

StatusPaths StatusPaths::under(const std::string& home, std::string statusFile) {
    return {.statusFile = std::move(statusFile),
            .logsDirectory = home + "/Library/Logs/ostrel",
            .launchAgentPlist = launchAgentPlistPath(home)};
}

StatusPoll StatusPoll::read(const std::string& statusFile, const Environment& environment,
                            std::optional<bool> storedCompact, const FileManager& files, Date now,
                            const TimeZone& timeZone) {
    StatusPoll poll;
    poll.snapshot = StatusFileLocator::load(statusFile, files);
    poll.state = DaemonState::from(poll.snapshot, now);
    poll.compact = CompactSetting::resolve(environment, storedCompact);
    const StatusFile* file = poll.snapshot.file();
    const auto sessions = file == nullptr ? std::span<const SessionStatus>() : std::span(file->sessions);
    const auto failures = file == nullptr ? std::span<const ProviderFailure>() : std::span(file->providerFailures);
    poll.presentation = StatusItemPresentation::make(poll.state, sessions, failures, poll.compact.compact, timeZone);
    return poll;
}

StatusMenu StatusPoll::menu(const StatusPaths& paths, const HiddenItemTracker& hiddenTracker, const FileManager& files,
                            Date now, const TimeZone& timeZone) const {
    return StatusMenu::make({
        .snapshot = snapshot,
        .state = state,
        .compact = compact,
        .hiddenTracker = hiddenTracker,
        .handoffExists = [&files](const std::string& path) { return files.canLookAt(path); },
        .isDaemonInstalled = files.exists(paths.launchAgentPlist),
        .logsDirectoryExists = files.exists(paths.logsDirectory),
        .statusFileExists = files.exists(paths.statusFile),
        .now = now,
        .timeZone = timeZone,
    });
}

} // namespace menubar
