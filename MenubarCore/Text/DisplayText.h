#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace menubar {

/// Makes text from outside safe to draw. Values keep what they were read with; only what is drawn goes through here.
/// Any thread; no state.

/// Whether line feeds are drawn as such (tooltips) or replaced like every other control character (titles).
enum class LineFeeds { replace, keep };

/// `text` with each control character (U+0000 to U+001F, U+007F to U+009F), each line or paragraph separator (U+2028,
/// U+2029), each bidirectional control (U+061C, U+200E, U+200F, U+202A to U+202E, U+2066 to U+2069) and each ill-formed
/// byte sequence replaced by U+FFFD.
[[nodiscard]] std::string displayText(std::string_view text, LineFeeds lineFeeds = LineFeeds::replace);

/// The longest title that is drawn, in user-perceived characters; a menu is never wider than a screen anyway.
inline constexpr std::size_t displayTitleLimit = 200;

/// `displayText` of a title; one of more than `displayTitleLimit` characters ends in "…" after one character fewer.
[[nodiscard]] std::string displayTitle(std::string_view text);

/// `displayTitle` of the text, in double quotes: for sentences.
[[nodiscard]] std::string quoted(std::string_view text);

} // namespace menubar
