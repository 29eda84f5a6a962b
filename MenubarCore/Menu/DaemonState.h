#pragma once

#include "MenubarCore/Status/StatusSnapshot.h"
#include "MenubarCore/Text/CaseOf.h"
#include "MenubarCore/Text/Date.h"
#include "MenubarCore/Text/EnumTexts.h"
#include "MenubarCore/Text/TimeZone.h"

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace menubar {

/// What the daemon is doing, judged from the status file's time stamps. A value; pure.
class DaemonState {
public:
    /// The daemon polled recently enough. `pollAge` in seconds; negative when the clocks disagree.
    struct Running {
        double pollAge = 0;
        bool operator==(const Running&) const = default;
    };

    /// The last poll is too old, or (no age) the file carries no poll time.
    struct Stale {
        std::optional<double> pollAge;
        bool operator==(const Stale&) const = default;
    };

    /// The daemon recorded a clean stop.
    struct Stopped {
        Date at;
        bool operator==(const Stopped&) const = default;
    };

    struct Unreadable {
        std::string reason;
        bool operator==(const Unreadable&) const = default;
    };

    struct Missing {
        bool operator==(const Missing&) const = default;
    };

    using Storage = std::variant<Running, Stale, Stopped, Unreadable, Missing>;

    enum class Case { running, stale, stopped, unreadable, missing };

    /// How many poll intervals may pass before a daemon counts as stale.
    static constexpr double freshnessFactor = 2.5;

    DaemonState() : m_storage(Missing{}) {}

    template <AlternativeOf<Storage> State>
    DaemonState(State state) : m_storage(std::move(state)) {}

    [[nodiscard]] static DaemonState from(const StatusSnapshot& snapshot, Date now);
    [[nodiscard]] static DaemonState from(const StatusFile& file, Date now);

    [[nodiscard]] Case kind() const {
        return caseOf(m_storage, Named<Running, Case::running>{}, Named<Stale, Case::stale>{},
                      Named<Stopped, Case::stopped>{}, Named<Unreadable, Case::unreadable>{},
                      Named<Missing, Case::missing>{});
    }

    [[nodiscard]] const Storage& storage() const& { return m_storage; }

    [[nodiscard]] bool isRunning() const { return kind() == Case::running; }

    /// A stale daemon's data does not count as live.
    [[nodiscard]] bool hasLiveData() const { return isRunning(); }

    /// Seconds since the last poll: of `running`, and of `stale` where it has one.
    [[nodiscard]] std::optional<double> pollAge() const;

    /// One line, for example "Daemon running (last poll 3s ago)".
    [[nodiscard]] std::string title(const TimeZone& timeZone) const;

    /// The line below the title: the configuration's summary, the reason, or what to do. `config` may be null.
    [[nodiscard]] std::string detail(const OstrelConfig* config) const;

    bool operator==(const DaemonState&) const = default;

private:
    Storage m_storage;
};

template <>
inline constexpr auto enumTexts<DaemonState::Case> =
    std::to_array<std::string_view>({"running", "stale", "stopped", "unreadable", "missing"});

} // namespace menubar
