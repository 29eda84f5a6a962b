#pragma once

#include <cstddef>
#include <string_view>

namespace menubar {

/// Text as a reader counts it: extended grapheme clusters (UAX #29), so that an emoji with joiners, a flag, a letter
/// with combining marks, a Hangul syllable of several jamo and CR LF each are one. Input is UTF-8; an ill-formed
/// sequence counts as U+FFFD would. Any thread; no state.

/// The number of user-perceived characters in `text`. Linear in its length.
[[nodiscard]] std::size_t graphemeCount(std::string_view text);

/// The leading part of `text` that holds its first `count` characters; all of `text` when it has no more. The view
/// points into `text`. Looks no further than the part it returns.
[[nodiscard]] std::string_view graphemePrefix(std::string_view text, std::size_t count);

} // namespace menubar
