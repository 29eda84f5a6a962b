#include "MenubarCore/JSON/NumberToken.h"

#include <algorithm>
#include <array>
#include <limits>

namespace menubar {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Takes the digits at the start of `text` off it.
std::string_view takeDigits(std::string_view& text) {
    std::size_t count = 0;
    while (count < text.size() && isDigit(text[count])) {
        ++count;
    }
    const std::string_view digits = text.substr(0, count);
    text.remove_prefix(count);
    return digits;
}

bool take(std::string_view& text, char c) {
    if (!text.starts_with(c)) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

/// Reads what follows the "e"; nothing without digits.
std::optional<std::int64_t> takeExponent(std::string_view& text) {
    constexpr std::int64_t saturation = 1'000'000'000'000'000'000;
    const bool negative = take(text, '-');
    if (!negative) {
        take(text, '+');
    }
    const std::string_view digits = takeDigits(text);
    if (digits.empty()) {
        return std::nullopt;
    }
    std::int64_t exponent = 0;
    for (const char c : digits) {
        exponent = exponent >= saturation / 10 ? saturation : (exponent * 10) + (c - '0');
    }
    return negative ? -exponent : exponent;
}

/// The 309 digits of 2^1024 - 2^970, which lies half-way between the largest double and the next power of two: from
/// there on numbers round to infinity.
constexpr std::string_view firstBeyondDouble = "17976931348623158079372897140530341507993413271003782693617377898044"
                                               "49682927647509466490179775872070963302864166928879109465555478519404"
                                               "02630657488671505820681908902000708383676273854845817711531764475730"
                                               "27006985557136695962284291481986083493647529271907416844436551070434"
                                               "2711559699508093042880177904174497792";

/// A number of smaller magnitude than this is less than half the smallest double.
constexpr std::int64_t leastMagnitude = -323;

} // namespace

std::optional<NumberToken> NumberToken::parse(std::string_view text) {
    NumberToken token;
    token.negative = take(text, '-');
    token.whole = takeDigits(text);
    if (token.whole.empty() || (token.whole.size() > 1 && token.whole.front() == '0')) {
        return std::nullopt;
    }
    if (take(text, '.')) {
        token.fraction = takeDigits(text);
        if (token.fraction.empty()) {
            return std::nullopt;
        }
    }
    if (take(text, 'e') || take(text, 'E')) {
        const std::optional<std::int64_t> exponent = takeExponent(text);
        if (!exponent) {
            return std::nullopt;
        }
        token.exponent = *exponent;
    }
    return text.empty() ? std::optional(token) : std::nullopt;
}

std::size_t NumberToken::leadingZeros() const {
    std::size_t count = 0;
    while (count < digitCount() && digit(count) == '0') {
        ++count;
    }
    return count;
}

std::int64_t NumberToken::magnitude(std::size_t leadingZeros) const {
    return static_cast<std::int64_t>(whole.size()) - static_cast<std::int64_t>(leadingZeros) + exponent;
}

std::optional<std::int64_t> NumberToken::integer() const {
    constexpr auto certainDigits = static_cast<std::size_t>(std::numeric_limits<std::int64_t>::digits10);
    if (fraction.empty() && exponent == 0 && whole.size() <= certainDigits) {
        std::int64_t value = 0;
        for (const char c : whole) {
            value = (value * 10) + (c - '0');
        }
        return negative ? -value : value;
    }
    const std::size_t first = leadingZeros();
    std::size_t last = digitCount();
    while (last > first && digit(last - 1) == '0') {
        --last;
    }
    if (first == last) {
        return 0;
    }
    // The digits [first, last) stand for a number that has `places` digits before its point.
    const std::int64_t places = magnitude(first);
    const auto significant = static_cast<std::int64_t>(last - first);
    if (places < significant || places > std::numeric_limits<std::int64_t>::digits10 + 1) {
        return std::nullopt;
    }
    std::uint64_t value = 0;
    for (std::int64_t place = 0; place < places; ++place) {
        const char c = place < significant ? digit(first + static_cast<std::size_t>(place)) : '0';
        value = (value * 10) + static_cast<std::uint64_t>(c - '0');
    }
    constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (value > largest + (negative ? 1 : 0)) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(negative ? 0 - value : value);
}

bool NumberToken::isBeyondDouble() const {
    constexpr auto limit = static_cast<std::int64_t>(firstBeyondDouble.size());
    if (exponent <= 0 && static_cast<std::int64_t>(whole.size()) < limit) {
        return false;
    }
    const std::size_t first = leadingZeros();
    if (first == digitCount() || magnitude(first) != limit) {
        return first != digitCount() && magnitude(first) > limit;
    }
    for (std::size_t i = 0; i < firstBeyondDouble.size(); ++i) {
        const char c = first + i < digitCount() ? digit(first + i) : '0';
        if (c != firstBeyondDouble[i]) {
            return c > firstBeyondDouble[i];
        }
    }
    return true;
}

std::optional<double> NumberToken::simpleDouble() const {
    // Both operands below are exact doubles, so the one operation rounds correctly.
    constexpr std::array<double, 23> powers{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                            1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    constexpr std::size_t exactDigits = 15;
    const std::int64_t power = exponent - static_cast<std::int64_t>(fraction.size());
    if (digitCount() > exactDigits || power < -22 || power > 22) {
        const std::size_t first = leadingZeros();
        if (first == digitCount() || magnitude(first) < leastMagnitude) {
            return negative ? -0.0 : 0.0;
        }
        return std::nullopt;
    }
    std::int64_t significand = 0;
    for (const std::string_view digits : {whole, fraction}) {
        for (const char c : digits) {
            significand = (significand * 10) + (c - '0');
        }
    }
    const auto exact = static_cast<double>(significand);
    const double value =
        power < 0 ? exact / powers[static_cast<std::size_t>(-power)] : exact * powers[static_cast<std::size_t>(power)];
    return negative ? -value : value;
}

std::string NumberToken::canonicalText() const {
    // No more than 767 digits tell one double from the next; of what follows only counts whether it is all zeros.
    constexpr std::size_t decidingDigits = 800;
    const std::size_t first = leadingZeros();
    const std::size_t last = std::min(digitCount(), first + decidingDigits);
    std::string text = negative ? "-" : "";
    text += digit(first);
    text += '.';
    for (std::size_t index = first + 1; index < last; ++index) {
        text += digit(index);
    }
    std::size_t index = last;
    while (index < digitCount() && digit(index) == '0') {
        ++index;
    }
    if (index < digitCount()) {
        text += '1';
    } else if (last == first + 1) {
        text += '0';
    }
    return text + "e" + std::to_string(magnitude(first) - 1);
}

} // namespace menubar
