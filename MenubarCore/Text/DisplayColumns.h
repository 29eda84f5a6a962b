#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace menubar {

/// Text as a terminal lays it out: in columns of one cell. Wide characters (East Asian ones, emoji) take two, combining
/// marks and joiners none. Where terminals differ (emoji sequences) the larger width counts, so that a line that is
/// said to fit does fit. Meant for text that went through `displayText`; a control character counts as one column. Any
/// thread; no state.

/// The number of columns that `text` takes. Linear in its length.
[[nodiscard]] std::size_t displayColumns(std::string_view text);

/// `text` when it takes at most `columns`; otherwise as much of its beginning as fits, with "…" after it. A character
/// is never parted from its combining marks. Empty when `columns` is 0. Looks no further than it has to.
[[nodiscard]] std::string fittedToColumns(std::string_view text, std::size_t columns);

} // namespace menubar
