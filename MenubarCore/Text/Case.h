#pragma once

#include <string>
#include <string_view>

namespace menubar {

/// Full, locale-independent case mapping and trimming of UTF-8 text. Any thread; no state.

/// Lower case of the whole text. Ill-formed bytes come out as U+FFFD.
[[nodiscard]] std::string lowercased(std::string_view text);

/// Full upper case of the whole text ("ß" gives "SS"). Ill-formed bytes come out as U+FFFD.
[[nodiscard]] std::string uppercased(std::string_view text);

/// `text` without the white space and line breaks at its two ends: characters of Unicode category Z*, U+0009 to
/// U+000D and U+0085. The view points into `text`.
[[nodiscard]] std::string_view trimmed(std::string_view text);

} // namespace menubar
