#include "MenubarCore/Text/Timestamp.h"

#include "MenubarCore/Text/Digits.h"

#include <algorithm>
#include <cstddef>

namespace menubar {

namespace {

/// Whether the text looks like `form`, in which "0" stands for any digit and every other character for itself.
bool hasForm(std::string_view text, std::string_view form) {
    bool fits = text.size() == form.size();
    for (std::size_t i = 0; i < std::min(text.size(), form.size()); ++i) { // without a branch: every session has four
        fits &= form[i] == '0' ? isDigit(text[i]) : text[i] == form[i];
    }
    return fits;
}

/// The number that these digits of a text make.
int number(std::string_view text, std::size_t position, std::size_t count) {
    int value = 0;
    for (const char c : text.substr(position, count)) {
        value = value * 10 + (c - '0');
    }
    return value;
}

/// The part of a second that the digits after its point stand for; what lies beyond microseconds is cut.
std::chrono::microseconds fraction(std::string_view digits) {
    int scale = 1'000'000;
    for (std::size_t i = 0; i < std::min<std::size_t>(digits.size(), 6); ++i) {
        scale /= 10;
    }
    return std::chrono::microseconds(number(digits, 0, 6) * scale);
}

} // namespace

std::optional<Date> parseTimestamp(std::string_view text) {
    using namespace std::chrono;
    constexpr std::string_view form = "0000-00-00T00:00:00";
    if (!hasForm(text.substr(0, form.size()), form)) {
        return std::nullopt;
    }
    const year_month_day date(year(number(text, 0, 4)), month(static_cast<unsigned>(number(text, 5, 2))),
                              day(static_cast<unsigned>(number(text, 8, 2))));
    const int hour = number(text, 11, 2);
    const int minute = number(text, 14, 2);
    const int second = number(text, 17, 2);
    std::string_view rest = text.substr(form.size());
    std::string_view decimals = "0";
    if (rest.starts_with('.')) {
        rest.remove_prefix(1);
        decimals = takeDigits(rest);
    }
    const bool isUTC = rest == "Z";
    const bool isWest = rest.starts_with('-');
    if (decimals.empty() || !(isUTC || hasForm(rest, isWest ? "-00:00" : "+00:00"))) {
        return std::nullopt;
    }
    const int zoneHour = isUTC ? 0 : number(rest, 1, 2);
    const int zoneMinute = isUTC ? 0 : number(rest, 4, 2);
    if (!date.ok() || date.year() < year(1) || std::max(hour, zoneHour) > 23 ||
        std::max({minute, second, zoneMinute}) > 59) {
        return std::nullopt;
    }
    const minutes offset = hours(zoneHour) + minutes(zoneMinute);
    return sys_days(date) + hours(hour) + minutes(minute) + seconds(second) + fraction(decimals) +
           (isWest ? offset : -offset);
}

} // namespace menubar
