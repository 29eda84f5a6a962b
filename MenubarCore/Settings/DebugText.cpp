#include "MenubarCore/Settings/DebugText.h"

#include "MenubarCore/JSON/JSONValue.h"

namespace menubar {

std::string debugText(std::string_view text) {
    return JSONValue(text).encode(JSONLayout::compact).value_or("");
}

std::string debugText(const std::vector<std::string>& list) {
    std::string result;
    for (const std::string& text : list) {
        result += (result.empty() ? "" : ", ") + debugText(text);
    }
    return "[" + result + "]";
}

std::string debugText(const std::map<std::string, std::string>& map) {
    std::string result;
    for (const auto& [key, value] : map) {
        result += (result.empty() ? "" : ", ") + debugText(key) + ": " + debugText(value);
    }
    return "[" + (result.empty() ? ":" : result) + "]";
}

} // namespace menubar
