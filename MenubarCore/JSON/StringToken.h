#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace menubar {

/// JSON strings as they are written, for readers. Pure; any thread.

/// How far a string reaches whose opening quotation mark has been passed.
struct StringExtent {
    std::size_t length = 0; ///< bytes before the closing quotation mark
    bool hasEscapes = false;
};

/// Looks for the closing quotation mark in `text`; nothing when there is none.
[[nodiscard]] std::optional<StringExtent> findStringEnd(std::string_view text);

/// What is wrong with an escape.
enum class EscapeFault {
    unknownEscape, ///< a backslash before none of `"\/bfnrtu`
    hexDigits,     ///< `\u` without four hexadecimal digits
    loneSurrogate, ///< one half of a surrogate pair, or the halves in the wrong order
};

/// One escape read: what it stands for, and how many bytes of text it takes.
struct Escape {
    char32_t codePoint = 0;
    std::size_t length = 0;
    std::optional<EscapeFault> fault{}; ///< `codePoint` means nothing then
};

/// Reads the escape whose backslash is at `position`; a surrogate pair is one escape.
[[nodiscard]] Escape readEscape(std::string_view text, std::size_t position);

/// Replaces `out` by the text that `raw`, the bytes between the quotation marks, stands for. False when an escape is at
/// fault. Takes everything else as it is.
[[nodiscard]] bool unescape(std::string_view raw, std::string& out);

} // namespace menubar
