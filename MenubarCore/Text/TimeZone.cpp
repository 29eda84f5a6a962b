#include "MenubarCore/Text/TimeZone.h"

#include <algorithm>
#include <array>
#include <utility>

#include <unicode/ucal.h>

namespace menubar {

namespace {

struct CloseCalendar {
    void operator()(UCalendar* calendar) const { ucal_close(calendar); }
};

using Calendar = std::unique_ptr<UCalendar, CloseCalendar>;

/// What ICU knows besides the zone database: three-letter names of old, most of them ambiguous, and withdrawn ones.
bool isForeignName(std::string_view name) {
    static constexpr auto abbreviations = std::to_array<std::string_view>(
        {"ACT", "AET", "AGT", "ART", "AST", "BET", "BST", "CAT", "CNT", "CST", "CTT", "EAT", "ECT",
         "IET", "IST", "JST", "MIT", "NET", "NST", "PLT", "PNT", "PRT", "PST", "SST", "VST"});
    return name == "Etc/Unknown" || name.starts_with("SystemV/") || std::ranges::binary_search(abbreviations, name);
}

/// ICU takes a name up to its first NUL, so that only what a name may hold reaches it.
bool isNameCharacter(char c) {
    constexpr std::string_view marks = "/_+-";
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || marks.contains(c);
}

/// The name in UTF-16; absent unless ICU has the zone under exactly this name.
std::optional<std::u16string> systemZoneId(std::string_view name) {
    constexpr std::size_t longestName = 64; // the zone database allows 14 for each part, ICU's names are below 40
    if (name.empty() || name.size() > longestName || !std::ranges::all_of(name, isNameCharacter) ||
        isForeignName(name)) {
        return std::nullopt;
    }
    std::u16string id(name.begin(), name.end());
    std::array<UChar, longestName> canonical{};
    UBool isSystemId = false;
    UErrorCode error = U_ZERO_ERROR;
    ucal_getCanonicalTimeZoneID(id.data(), static_cast<std::int32_t>(id.size()), canonical.data(),
                                static_cast<std::int32_t>(canonical.size()), &isSystemId, &error);
    return U_SUCCESS(error) && isSystemId ? std::optional(std::move(id)) : std::nullopt;
}

/// A copy of `prototype` of one's own, since a calendar is changed by every question.
std::chrono::milliseconds utcOffset(const UCalendar& prototype, std::chrono::milliseconds sinceEpoch) {
    UErrorCode error = U_ZERO_ERROR;
    const Calendar calendar(ucal_clone(&prototype, &error));
    if (U_FAILURE(error)) {
        return {};
    }
    ucal_setMillis(calendar.get(), static_cast<double>(sinceEpoch.count()), &error);
    const std::int32_t standard = ucal_get(calendar.get(), UCAL_ZONE_OFFSET, &error);
    const std::int32_t saving = ucal_get(calendar.get(), UCAL_DST_OFFSET, &error);
    return std::chrono::milliseconds(U_SUCCESS(error) ? standard + saving : 0);
}

} // namespace

struct TimeZone::Rules {
    Calendar calendar; // never changed after it was made, so that threads may clone it side by side
};

TimeZone::TimeZone() : m_name("UTC") {}

TimeZone::TimeZone(std::string name, std::shared_ptr<const Rules> rules)
    : m_name(std::move(name)), m_rules(std::move(rules)) {}

std::optional<TimeZone> TimeZone::named(std::string_view name) {
    if (name == "UTC") {
        return TimeZone();
    }
    const std::optional<std::u16string> id = systemZoneId(name);
    if (!id) {
        return std::nullopt;
    }
    UErrorCode error = U_ZERO_ERROR;
    Calendar calendar(
        ucal_open(id->data(), static_cast<std::int32_t>(id->size()), "en_US_POSIX", UCAL_GREGORIAN, &error));
    if (U_FAILURE(error)) {
        return std::nullopt;
    }
    return TimeZone(std::string(name), std::make_shared<const Rules>(Rules{std::move(calendar)}));
}

ClockTime TimeZone::clockTime(Date date) const {
    using namespace std::chrono;
    const auto utc = floor<milliseconds>(date.time_since_epoch());
    const milliseconds offset = m_rules ? utcOffset(*m_rules->calendar, utc) : 0ms;
    const auto minuteOfDay = floor<minutes>(utc + offset - floor<days>(utc + offset)).count();
    return ClockTime{static_cast<int>(minuteOfDay / 60), static_cast<int>(minuteOfDay % 60)};
}

} // namespace menubar
