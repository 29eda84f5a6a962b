#include "MenubarCore/Text/Quoted.h"

#include "MenubarCore/Text/DisplayText.h"

namespace menubar {

std::string quoted(std::string_view text) {
    return "\"" + displayTitle(text) + "\"";
}

std::string literal(std::string_view text) {
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
