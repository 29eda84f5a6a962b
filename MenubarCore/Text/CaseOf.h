#pragma once

#include <cstddef>
#include <variant>

namespace menubar {

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
