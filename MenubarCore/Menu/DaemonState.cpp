#include "MenubarCore/Menu/DaemonState.h"

#include "MenubarCore/Menu/Formatting.h"

#include <algorithm>

namespace menubar {

namespace {

double freshnessLimitSeconds(const StatusFile& file) {
    const std::int64_t intervalMs =
        file.intervalMs && *file.intervalMs > 0 ? *file.intervalMs : StatusFile::defaultIntervalMs;
    return static_cast<double>(intervalMs) / 1000 * DaemonState::freshnessFactor;
}

std::string lastPoll(double pollAge) {
    return " (last poll " + Formatting::duration(std::max(pollAge, 0.0)) + " ago)";
}

} // namespace

DaemonState DaemonState::from(const StatusSnapshot& snapshot, Date now) {
    if (const auto* broken = std::get_if<StatusSnapshot::Unreadable>(&snapshot.storage())) {
        return Unreadable{broken->reason};
    }
    const StatusFile* const file = snapshot.file();
    return file == nullptr ? DaemonState() : from(*file, now);
}

DaemonState DaemonState::from(const StatusFile& file, Date now) {
    if (file.stoppedAt) {
        return Stopped{*file.stoppedAt};
    }
    if (!file.at) {
        return Stale{};
    }
    const double pollAge = secondsBetween(*file.at, now);
    if (pollAge <= freshnessLimitSeconds(file)) {
        return Running{pollAge};
    }
    return Stale{pollAge};
}

std::optional<double> DaemonState::pollAge() const {
    if (const auto* running = std::get_if<Running>(&m_storage)) {
        return running->pollAge;
    }
    const auto* stale = std::get_if<Stale>(&m_storage);
    return stale == nullptr ? std::nullopt : stale->pollAge;
}

std::string DaemonState::title(const TimeZone& timeZone) const {
    switch (kind()) {
    case Case::running: return "Daemon running" + lastPoll(*pollAge());
    case Case::stale:
        return "Daemon not responding" + (pollAge() ? lastPoll(*pollAge()) : " (no poll time in status file)");
    case Case::stopped: return "Daemon stopped at " + Formatting::clock(std::get<Stopped>(m_storage).at, timeZone);
    case Case::unreadable: return "Status file unreadable";
    case Case::missing: return "Daemon not running";
    }
    return {};
}

std::string DaemonState::detail(const OstrelConfig* config) const {
    switch (kind()) {
    case Case::running:
    case Case::stale:
    case Case::stopped: return Formatting::configSummary(config);
    case Case::unreadable: return std::get<Unreadable>(m_storage).reason;
    case Case::missing: return "Start it with: ostrel watch (or ostrel install)";
    }
    return {};
}

} // namespace menubar
