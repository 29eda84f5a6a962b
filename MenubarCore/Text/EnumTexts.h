#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <string_view>

namespace menubar {

/// The texts of an enumeration, in the order of its enumerators. Stands beside the enumeration:
///
///     template <>
///     inline constexpr auto enumTexts<Unit> = std::to_array<std::string_view>({"metre", "inch", "unknown"});
template <typename E>
inline constexpr std::nullptr_t enumTexts = nullptr;

template <typename E>
concept TextEnumeration = !std::same_as<decltype(enumTexts<E>), const std::nullptr_t>;

/// The text of an enumerator.
template <TextEnumeration E>
[[nodiscard]] constexpr std::string_view rawText(E value) {
    return enumTexts<E>.at(static_cast<std::size_t>(value));
}

/// The enumerator of a text; the last one for a text that the table does not hold.
template <TextEnumeration E>
[[nodiscard]] constexpr E enumeratorOf(std::string_view text) {
    std::size_t index = 0;
    while (index + 1 < enumTexts<E>.size() && enumTexts<E>[index] != text) {
        ++index;
    }
    return static_cast<E>(index);
}

} // namespace menubar
