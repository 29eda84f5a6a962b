#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace menubar {

/// A JSON number as it is written, taken apart. Everything here is exact and linear in the number of digits, whatever
/// the exponent. Pure; any thread.
struct NumberToken {
    bool negative = false;
    std::string_view whole;    ///< digits before the point, at least one
    std::string_view fraction; ///< digits after it, may be empty
    std::int64_t exponent = 0; ///< saturated far beyond what any number of digits could make up for

    /// Takes `text` apart; nothing unless all of it is one number by the grammar of JSON.
    [[nodiscard]] static std::optional<NumberToken> parse(std::string_view text);

    /// The number when it is whole and fits 64 bits ("1.0", "1e3" and "1000e-2" are whole), without any rounding.
    [[nodiscard]] std::optional<std::int64_t> integer() const;

    /// Whether the nearest double would be an infinity.
    [[nodiscard]] bool isBeyondDouble() const;

    /// The nearest double, when few digits and a small exponent make it certain; zero for what rounds to it.
    [[nodiscard]] std::optional<double> simpleDouble() const;

    /// A number that rounds to the same double, which is neither zero nor infinite, in few hundred characters: one
    /// digit that is not zero, a point, digits, "e", an exponent.
    [[nodiscard]] std::string canonicalText() const;

    [[nodiscard]] std::size_t digitCount() const { return whole.size() + fraction.size(); }

private:
    /// The digits of `whole` and `fraction` in one row.
    [[nodiscard]] char digit(std::size_t index) const {
        return index < whole.size() ? whole[index] : fraction[index - whole.size()];
    }

    [[nodiscard]] std::size_t leadingZeros() const;

    /// Where the decimal point stands, counted from the first digit that is not zero.
    [[nodiscard]] std::int64_t magnitude(std::size_t leadingZeros) const;
};

} // namespace menubar
