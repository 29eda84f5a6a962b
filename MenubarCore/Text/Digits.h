#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace menubar {

[[nodiscard]] constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Takes the decimal digits off the front of `text`, no more than `most` of them; none where it begins otherwise.
[[nodiscard]] constexpr std::string_view takeDigits(std::string_view& text, std::size_t most = std::string_view::npos) {
    const std::string_view head = text.substr(0, most);
    const auto count = static_cast<std::size_t>(std::ranges::find_if_not(head, isDigit) - head.begin());
    text.remove_prefix(count);
    return head.substr(0, count);
}

} // namespace menubar
