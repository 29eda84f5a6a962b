#pragma once

#include <string>
#include <string_view>

namespace menubar {

/// `displayTitle` of the text, in double quotes: for sentences. Any thread.
[[nodiscard]] std::string quoted(std::string_view text);

/// The text in double quotes, with line feeds, quotes and backslashes escaped: for dumps, in which one thing stays on
/// one line. Any thread.
[[nodiscard]] std::string literal(std::string_view text);

} // namespace menubar
