#include "MenubarCore/Text/DaylightRule.h"

#include "MenubarCore/Text/Digits.h"

#include <algorithm>
#include <charconv>

namespace menubar {

using namespace std::chrono;

namespace {

/// A whole number of local midnights after 1970, as if local time were UTC.
seconds midnight(sys_days day) {
    return day.time_since_epoch();
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

} // namespace

/// Takes the text apart from its start; every step is absent when the text does not go on as it should.
class DaylightRuleParser {
public:
    explicit DaylightRuleParser(std::string_view text) : m_rest(text) {}

    std::optional<DaylightRule> rule() {
        DaylightRule result;
        if (!skipAbbreviation() || !readOffset(result.m_standardOffset)) {
            return std::nullopt;
        }
        if (m_rest.empty()) {
            return result;
        }
        DaylightRule::Saving saving{.offset = result.m_standardOffset + hours(1), .begin = {}, .end = {}};
        const bool isWhole = skipAbbreviation() && (m_rest.starts_with(',') || readOffset(saving.offset)) &&
                             readChange(saving.begin) && readChange(saving.end) && m_rest.empty();
        result.m_saving = saving;
        return isWhole ? std::optional(result) : std::nullopt;
    }

private:
    bool skip(char c) {
        const bool isNext = m_rest.starts_with(c);
        m_rest.remove_prefix(isNext ? 1 : 0);
        return isNext;
    }

    /// "CET", or "<+0330>".
    bool skipAbbreviation() {
        if (skip('<')) {
            const std::size_t end = m_rest.find('>');
            m_rest.remove_prefix(end == std::string_view::npos ? m_rest.size() : end + 1);
            return end != std::string_view::npos && end > 0;
        }
        const auto end = std::ranges::find_if_not(m_rest, isLetter);
        const auto length = static_cast<std::size_t>(end - m_rest.begin());
        m_rest.remove_prefix(length);
        return length >= 3;
    }

    std::optional<int> number(int most) {
        int value = 0;
        const std::string_view digits = takeDigits(m_rest, 3);
        std::from_chars(digits.data(), digits.data() + digits.size(), value);
        return !digits.empty() && value <= most ? std::optional(value) : std::nullopt;
    }

    /// Hours, with minutes and seconds where they are given; the hours of a change may leave its day by a week.
    std::optional<seconds> time() {
        const bool isNegative = skip('-');
        if (!isNegative) {
            skip('+');
        }
        seconds result{};
        seconds unit = hours(1);
        do {
            const std::optional<int> part = number(unit == hours(1) ? 167 : 59);
            if (!part) {
                return std::nullopt;
            }
            result += *part * unit;
            unit /= 60;
        } while (unit >= seconds(1) && skip(':'));
        return isNegative ? -result : result;
    }

    /// Offsets are written as what must be added to local time to get UTC.
    bool readOffset(seconds& offset) {
        const std::optional<seconds> behind = time();
        offset = -behind.value_or(seconds());
        return behind && abs(*behind) <= hours(24) + minutes(59) + seconds(59);
    }

    bool readChange(DaylightRule::Change& change) {
        if (!skip(',') || !(skip('M') ? readWeekday(change) : readDayOfYear(change))) {
            return false;
        }
        change.time = hours(2);
        if (!skip('/')) {
            return true;
        }
        const std::optional<seconds> given = time();
        change.time = given.value_or(seconds());
        return given.has_value();
    }

    bool readWeekday(DaylightRule::Change& change) {
        const std::optional<int> monthNumber = number(12);
        const std::optional<int> week = skip('.') ? number(5) : std::nullopt;
        const std::optional<int> day = skip('.') ? number(6) : std::nullopt;
        if (!monthNumber || *monthNumber == 0 || !week || *week == 0 || !day) {
            return false;
        }
        change.day = DaylightRule::WeekdayOfMonth{.month = month(static_cast<unsigned>(*monthNumber)),
                                                  .week = static_cast<unsigned>(*week),
                                                  .weekday = weekday(static_cast<unsigned>(*day))};
        return true;
    }

    bool readDayOfYear(DaylightRule::Change& change) {
        const bool countsFromOne = skip('J');
        const std::optional<int> day = number(365);
        if (!day || (countsFromOne && *day == 0)) {
            return false;
        }
        change.day = DaylightRule::DayOfYear{.sinceNewYear = days(countsFromOne ? *day - 1 : *day),
                                             .countsLeapDay = !countsFromOne};
        return true;
    }

    std::string_view m_rest;
};

std::optional<DaylightRule> DaylightRule::parse(std::string_view text) {
    return DaylightRuleParser(text).rule();
}

seconds DaylightRule::Change::localTime(year year) const {
    if (const auto* const weekdayOfMonth = std::get_if<WeekdayOfMonth>(&day)) {
        const auto& [month, week, weekday] = *weekdayOfMonth;
        const sys_days date =
            week == 5 ? sys_days(year / month / weekday[last]) : sys_days(year / month / weekday[week]);
        return midnight(date) + time;
    }
    const DayOfYear& dayOfYear = *std::get_if<DayOfYear>(&day);
    const bool skipsLeapDay = !dayOfYear.countsLeapDay && year.is_leap() && dayOfYear.sinceNewYear >= days(31 + 28);
    return midnight(sys_days(year / January / 1) + dayOfYear.sinceNewYear + days(skipsLeapDay ? 1 : 0)) + time;
}

seconds DaylightRule::utcOffset(seconds sinceEpoch) const {
    if (!m_saving) {
        return m_standardOffset;
    }
    const sys_days localDay = floor<days>(sys_seconds(sinceEpoch + m_standardOffset));
    const year localYear = year_month_day(localDay).year();
    const seconds begin = m_saving->begin.localTime(localYear) - m_standardOffset;
    const seconds end = m_saving->end.localTime(localYear) - m_saving->offset;
    // South of the equator the saving of a year ends before it begins.
    const bool isSaving =
        begin < end ? begin <= sinceEpoch && sinceEpoch < end : !(end <= sinceEpoch && sinceEpoch < begin);
    return isSaving ? m_saving->offset : m_standardOffset;
}

} // namespace menubar
