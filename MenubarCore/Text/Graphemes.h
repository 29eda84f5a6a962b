#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace menubar {

/// Text as a reader counts it: extended grapheme clusters (UAX #29), so that an emoji with joiners, a flag, a letter
/// with combining marks, a Hangul syllable of several jamo and CR LF each are one. Input is UTF-8; an ill-formed
/// sequence counts as U+FFFD would. Any thread; no state.

/// The leading part of `text` that holds its first `count` characters; all of `text` when it has no more. The view
/// points into `text`. Looks no further than the part it returns.
[[nodiscard]] std::string_view graphemePrefix(std::string_view text, std::size_t count);

/// `text` when it has at most `limit` characters (above 0); otherwise the first of them but one, and "…".
[[nodiscard]] std::string cutToGraphemes(std::string text, std::size_t limit);

} // namespace menubar
