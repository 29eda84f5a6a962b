#pragma once

#include <string>
#include <string_view>

namespace menubar {

/// The text in double quotes, with line feeds, quotes and backslashes escaped: in a dump one thing stays on one line.
inline std::string literal(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '\n') {
            result += "\\n";
        } else if (c == '"' || c == '\\') {
            result += {'\\', c};
        } else {
            result += c;
        }
    }
    return result + '"';
}

} // namespace menubar
