#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace menubar {

/// Walking UTF-8 by code points. Any thread; no state.

/// Stands for each ill-formed sequence (the longest that could have begun a code point).
inline constexpr std::int32_t illFormed = -1;

/// The code point that begins at `index`, or `illFormed`; `index` (below the size) moves past it.
[[nodiscard]] std::int32_t nextCodePoint(std::string_view text, std::size_t& index);

/// The code point that ends at `index`, or `illFormed`; `index` (above 0) moves to its start.
[[nodiscard]] std::int32_t previousCodePoint(std::string_view text, std::size_t& index);

[[nodiscard]] bool isAscii(std::string_view text);

inline constexpr std::string_view replacementCharacter = "\uFFFD";

/// `text` with each ill-formed sequence replaced by U+FFFD.
[[nodiscard]] std::string wellFormed(std::string_view text);

} // namespace menubar
