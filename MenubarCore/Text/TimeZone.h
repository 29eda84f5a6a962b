#pragma once

#include "MenubarCore/Text/Date.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace menubar {

/// A wall-clock time of day. hour 0...23, minute 0...59.
struct ClockTime {
    int hour = 0;
    int minute = 0;

    bool operator==(const ClockTime&) const = default;
};

/// A time zone of the zone database with its whole history of offsets. An immutable value, cheap to copy; every
/// member may be called from any thread.
class TimeZone {
public:
    /// Coordinated universal time.
    TimeZone();

    /// The zone of an IANA name such as "Asia/Kathmandu", case-sensitive, links included; absent for a name that the
    /// zone database does not hold.
    [[nodiscard]] static std::optional<TimeZone> named(std::string_view name);

    /// The name it was made with; "UTC" for a default-made one.
    [[nodiscard]] const std::string& name() const { return m_name; }

    /// Hour and minute that a wall clock in this zone shows at `date`; seconds are cut.
    [[nodiscard]] ClockTime clockTime(Date date) const;

private:
    struct Rules;

    TimeZone(std::string name, std::shared_ptr<const Rules> rules);

    std::string m_name;
    std::shared_ptr<const Rules> m_rules; // null stands for UTC
};

} // namespace menubar
