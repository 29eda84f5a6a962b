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

struct StateOfSnapshot {
    Date now;

    DaemonState operator()(const StatusSnapshot::Unreadable& snapshot) const {
        return DaemonState::Unreadable{snapshot.reason};
    }

    DaemonState operator()(const StatusSnapshot::Loaded& snapshot) const {
        return DaemonState::from(snapshot.file, now);
    }

    DaemonState operator()(StatusSnapshot::Missing) const { return DaemonState::Missing{}; }
};

struct Title {
    const TimeZone& timeZone;

    std::string operator()(DaemonState::Running state) const { return "Daemon running" + lastPoll(state.pollAge); }

    std::string operator()(DaemonState::Stale state) const {
        return "Daemon not responding" +
               (state.pollAge ? lastPoll(*state.pollAge) : std::string(" (no poll time in status file)"));
    }

    std::string operator()(DaemonState::Stopped state) const {
        return "Daemon stopped at " + Formatting::clock(state.at, timeZone);
    }

    std::string operator()(const DaemonState::Unreadable&) const { return "Status file unreadable"; }

    std::string operator()(DaemonState::Missing) const { return "Daemon not running"; }
};

struct Detail {
    const OstrelConfig* config;

    std::string operator()(DaemonState::Running) const { return Formatting::configSummary(config); }

    std::string operator()(DaemonState::Stale) const { return Formatting::configSummary(config); }

    std::string operator()(DaemonState::Stopped) const { return Formatting::configSummary(config); }

    std::string operator()(const DaemonState::Unreadable& state) const { return state.reason; }

    std::string operator()(DaemonState::Missing) const { return "Start it with: ostrel watch (or ostrel install)"; }
};

} // namespace

DaemonState DaemonState::from(const StatusSnapshot& snapshot, Date now) {
    return std::visit(StateOfSnapshot{now}, snapshot.storage());
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
    return std::visit(Title{timeZone}, m_storage);
}

std::string DaemonState::detail(const OstrelConfig* config) const {
    return std::visit(Detail{config}, m_storage);
}

} // namespace menubar
