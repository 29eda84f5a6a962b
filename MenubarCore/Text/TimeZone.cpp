#include "MenubarCore/Text/TimeZone.h"

#include "MenubarCore/Text/ZoneFile.h"

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

bool isNameCharacter(char c) {
    constexpr std::string_view marks = "/_+-";
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || marks.contains(c);
}

/// The name in UTF-16; absent unless ICU has the zone under exactly this name.
std::optional<std::u16string> systemZoneId(std::string_view name) {
    constexpr std::size_t longestCanonicalName = 128;
    if (!TimeZone::isWellFormedName(name) || isForeignName(name)) {
        return std::nullopt;
    }
    std::u16string id(name.begin(), name.end());
    std::array<UChar, longestCanonicalName> canonical{};
    UBool isSystemId = false;
    UErrorCode error = U_ZERO_ERROR;
    ucal_getCanonicalTimeZoneID(id.data(), static_cast<std::int32_t>(id.size()), canonical.data(),
                                static_cast<std::int32_t>(canonical.size()), &isSystemId, &error);
    return U_SUCCESS(error) && isSystemId ? std::optional(std::move(id)) : std::nullopt;
}

} // namespace

class TimeZone::Rules {
public:
    Rules() = default;
    Rules(const Rules&) = delete;
    Rules& operator=(const Rules&) = delete;
    virtual ~Rules() = default;

    /// How far local time is ahead of UTC.
    [[nodiscard]] virtual std::chrono::seconds utcOffset(std::chrono::seconds sinceEpoch) const = 0;
};

class TimeZone::ICURules final : public Rules {
public:
    explicit ICURules(Calendar calendar) : m_calendar(std::move(calendar)) {}

    /// Asks a copy of the calendar, since a calendar is changed by every question.
    [[nodiscard]] std::chrono::seconds utcOffset(std::chrono::seconds sinceEpoch) const override {
        UErrorCode error = U_ZERO_ERROR;
        const Calendar calendar(ucal_clone(m_calendar.get(), &error));
        if (U_FAILURE(error)) {
            return {};
        }
        ucal_setMillis(calendar.get(), static_cast<double>(sinceEpoch.count()) * 1000, &error);
        const std::int32_t standard = ucal_get(calendar.get(), UCAL_ZONE_OFFSET, &error);
        const std::int32_t saving = ucal_get(calendar.get(), UCAL_DST_OFFSET, &error);
        return std::chrono::seconds(U_SUCCESS(error) ? (standard + saving) / 1000 : 0);
    }

private:
    Calendar m_calendar; // never changed, so that threads may copy it side by side
};

class TimeZone::ZoneFileRules final : public Rules {
public:
    explicit ZoneFileRules(ZoneFile file) : m_file(std::move(file)) {}

    [[nodiscard]] std::chrono::seconds utcOffset(std::chrono::seconds sinceEpoch) const override {
        return m_file.utcOffset(sinceEpoch);
    }

private:
    ZoneFile m_file;
};

TimeZone::TimeZone() : m_name("UTC") {}

TimeZone::TimeZone(std::string name, std::shared_ptr<const Rules> rules)
    : m_name(std::move(name)), m_rules(std::move(rules)) {}

bool TimeZone::isWellFormedName(std::string_view name) {
    constexpr std::size_t longestName = 64; // the zone database allows 14 for each part; none has more than 40 in all
    return !name.empty() && name.size() <= longestName && std::ranges::all_of(name, isNameCharacter) &&
           !name.starts_with('/') && !name.ends_with('/') && !name.contains("//");
}

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
    return TimeZone(std::string(name), std::make_shared<const ICURules>(std::move(calendar)));
}

std::optional<TimeZone> TimeZone::fromZoneFile(std::string name, std::string_view bytes) {
    std::optional<ZoneFile> file = ZoneFile::parse(bytes);
    if (!file) {
        return std::nullopt;
    }
    return TimeZone(std::move(name), std::make_shared<const ZoneFileRules>(*std::move(file)));
}

ClockTime TimeZone::clockTime(Date date) const {
    using namespace std::chrono;
    const auto utc = floor<seconds>(date.time_since_epoch());
    const seconds local = utc + (m_rules ? m_rules->utcOffset(utc) : 0s);
    const auto minuteOfDay = floor<minutes>(local - floor<days>(local)).count();
    return {.hour = static_cast<int>(minuteOfDay / 60), .minute = static_cast<int>(minuteOfDay % 60)};
}

} // namespace menubar
