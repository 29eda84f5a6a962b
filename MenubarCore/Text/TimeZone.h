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
///
/// Governments change zones several times a year, and ICU knows what was known when it was released. A system that
/// brings its own compiled zone database keeps that one current: it is the better source where there is one.
class TimeZone {
public:
    /// Coordinated universal time.
    TimeZone();

    /// The zone of an IANA name such as "Asia/Kathmandu", case-sensitive, links included; absent for a name that the
    /// zone database does not hold.
    [[nodiscard]] static std::optional<TimeZone> named(std::string_view name);

    /// The zone that a compiled file of the zone database (RFC 8536) describes; absent for any other bytes.
    [[nodiscard]] static std::optional<TimeZone> fromZoneFile(std::string name, std::string_view bytes);

    /// Whether a zone of the zone database could have this name: parts of letters, digits, "_", "+" and "-", joined by
    /// "/". So it is a relative path as well, which leads to no other place than it says.
    [[nodiscard]] static bool isWellFormedName(std::string_view name);

    /// The name it was made with; "UTC" for a default-made one.
    [[nodiscard]] const std::string& name() const { return m_name; }

    /// Hour and minute that a wall clock in this zone shows at `date`; seconds are cut.
    [[nodiscard]] ClockTime clockTime(Date date) const;

private:
    class Rules;
    class ICURules;
    class ZoneFileRules;

    TimeZone(std::string name, std::shared_ptr<const Rules> rules);

    std::string m_name;
    std::shared_ptr<const Rules> m_rules; // null stands for UTC
};

} // namespace menubar
