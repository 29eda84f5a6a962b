#pragma once

#include <chrono>
#include <optional>
#include <string_view>
#include <variant>

namespace menubar {

/// The rule by which a zone goes on after the last change that its history lists: a standard offset and, where there
/// is daylight saving, the two days of each year on which it begins and ends. Read from the text that ends a zone file,
/// for example "CET-1CEST,M3.5.0,M10.5.0/3". A value; any thread.
class DaylightRule {
public:
    /// Absent for a text that is none (an empty one included) or that has daylight saving without days.
    [[nodiscard]] static std::optional<DaylightRule> parse(std::string_view text);

    /// How far local time is ahead of UTC at an instant, counted from 1970.
    [[nodiscard]] std::chrono::seconds utcOffset(std::chrono::seconds sinceEpoch) const;

private:
    friend class DaylightRuleParser;

    /// The `week`th such weekday of a month; the last one for week 5.
    struct WeekdayOfMonth {
        std::chrono::month month;
        unsigned week;
        std::chrono::weekday weekday;
    };

    /// Counted from 1 January; 29 February is counted only where `countsLeapDay`.
    struct DayOfYear {
        std::chrono::days sinceNewYear;
        bool countsLeapDay;
    };

    struct Change {
        std::variant<WeekdayOfMonth, DayOfYear> day;
        std::chrono::seconds time{}; ///< after local midnight, by the clock before the change; may leave the day

        [[nodiscard]] std::chrono::seconds localTime(std::chrono::year year) const;
    };

    struct Saving {
        std::chrono::seconds offset{};
        Change begin;
        Change end;
    };

    std::chrono::seconds m_standardOffset{};
    std::optional<Saving> m_saving;
};

} // namespace menubar
