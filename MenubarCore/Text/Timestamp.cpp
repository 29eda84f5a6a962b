#include "MenubarCore/Text/Timestamp.h"

#include "MenubarCore/Text/Digits.h"

#include <cstddef>

namespace menubar {

namespace {

/// Takes a text apart from its start. A failed step leaves the scanner failed, so that only the end needs asking.
class Scanner {
public:
    explicit Scanner(std::string_view text) : m_rest(text) {}

    /// Exactly `digits` digits, as a number from `least` to `most`.
    int number(std::size_t digits, int least, int most) {
        int value = 0;
        for (std::size_t index = 0; index < digits; ++index) {
            if (!startsWithDigit()) {
                return fail();
            }
            value = value * 10 + (take() - '0');
        }
        return value >= least && value <= most ? value : fail();
    }

    void expect(char c) {
        if (!startsWith(c)) {
            fail();
            return;
        }
        take();
    }

    /// A fraction of a second of at least one digit; what lies beyond microseconds is cut.
    std::chrono::microseconds fraction() {
        int value = 0;
        int scale = 1'000'000;
        if (!startsWithDigit()) {
            fail();
        }
        while (startsWithDigit()) {
            scale /= 10;
            value += (take() - '0') * scale;
        }
        return std::chrono::microseconds(value);
    }

    char take() {
        const char c = m_rest.front();
        m_rest.remove_prefix(1);
        return c;
    }

    [[nodiscard]] bool startsWith(char c) const { return m_rest.starts_with(c); }

    [[nodiscard]] bool isDone() const { return !m_failed && m_rest.empty(); }

private:
    [[nodiscard]] bool startsWithDigit() const { return !m_rest.empty() && isDigit(m_rest.front()); }

    int fail() {
        m_failed = true;
        m_rest = {};
        return 0;
    }

    std::string_view m_rest;
    bool m_failed = false;
};

std::chrono::minutes zoneOffset(Scanner& scanner) {
    if (scanner.startsWith('Z')) {
        scanner.take();
        return {};
    }
    const bool isWest = scanner.startsWith('-');
    scanner.expect(isWest ? '-' : '+');
    const std::chrono::hours hours(scanner.number(2, 0, 23));
    scanner.expect(':');
    const std::chrono::minutes offset = hours + std::chrono::minutes(scanner.number(2, 0, 59));
    return isWest ? -offset : offset;
}

} // namespace

std::optional<Date> parseTimestamp(std::string_view text) {
    using namespace std::chrono;
    Scanner scanner(text);
    const year year(scanner.number(4, 1, 9999));
    scanner.expect('-');
    const month month(static_cast<unsigned>(scanner.number(2, 1, 12)));
    scanner.expect('-');
    const day day(static_cast<unsigned>(scanner.number(2, 1, 31)));
    scanner.expect('T');
    microseconds time = hours(scanner.number(2, 0, 23));
    scanner.expect(':');
    time += minutes(scanner.number(2, 0, 59));
    scanner.expect(':');
    time += seconds(scanner.number(2, 0, 59));
    if (scanner.startsWith('.')) {
        scanner.take();
        time += scanner.fraction();
    }
    const minutes offset = zoneOffset(scanner);
    const year_month_day date(year, month, day);
    if (!scanner.isDone() || !date.ok()) {
        return std::nullopt;
    }
    return sys_days(date) + time - offset;
}

} // namespace menubar
