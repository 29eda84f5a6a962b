#pragma once

#include "MenubarCore/Text/Date.h"

#include <chrono>
#include <functional>
#include <utility>

namespace menubar {

/// A wall-clock time of day. hour 0...23, minute 0...59; seconds are cut.
struct ClockTime {
    int hour = 0;
    int minute = 0;

    bool operator==(const ClockTime&) const = default;
};

/// What a wall clock shows at an instant. A value, cheap to copy; any thread that the function it stands on allows.
class TimeZone {
public:
    using ClockTimeAt = std::function<ClockTime(Date)>;

    /// Coordinated universal time.
    TimeZone() : TimeZone(std::chrono::minutes(0)) {}

    /// The same distance from UTC for ever; east of Greenwich it is positive.
    explicit TimeZone(std::chrono::minutes aheadOfUTC);

    /// The zone that this function knows, which is never empty.
    explicit TimeZone(ClockTimeAt clockTimeAt) : m_clockTimeAt(std::move(clockTimeAt)) {}

    [[nodiscard]] ClockTime clockTime(Date date) const { return m_clockTimeAt(date); }

private:
    ClockTimeAt m_clockTimeAt;
};

} // namespace menubar
