#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <variant>

namespace menubar {

namespace detail {

template <class T, class Variant>
inline constexpr bool isAlternative = false;

template <class T, class... Alternatives>
inline constexpr bool isAlternative<T, std::variant<Alternatives...>> = (std::same_as<T, Alternatives> || ...);

} // namespace detail

/// A type that a variant has as one of its alternatives.
template <class T, class Variant>
concept AlternativeOf = detail::isAlternative<T, Variant>;

/// A copy of what the variant holds, where that is a `T`.
template <class T, class... Alternatives>
[[nodiscard]] constexpr std::optional<T> copyOf(const std::variant<Alternatives...>& variant) {
    const T* held = std::get_if<T>(&variant);
    return held == nullptr ? std::nullopt : std::optional(*held);
}

/// One alternative of a variant, and what an enumeration calls it.
template <class Payload, auto value>
struct Named {};

/// The enumeration's value for what the variant holds. The names stand in the order of the alternatives and of the
/// enumeration: any other order does not compile.
template <class... Payloads, class Case, Case... values>
[[nodiscard]] constexpr Case caseOf(const std::variant<Payloads...>& variant, Named<Payloads, values>... /*names*/) {
    static_assert([] {
        std::size_t index = 0;
        return ((static_cast<std::size_t>(values) == index++) && ...);
    }());
    return static_cast<Case>(variant.index());
}

} // namespace menubar
