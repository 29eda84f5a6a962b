#pragma once

#include <string>
#include <string_view>

namespace menubar {

/// The texts in their order, the separator between each two of them, empty ones too. Any thread.
template <typename Texts>
[[nodiscard]] std::string joined(const Texts& texts, std::string_view separator) {
    std::string result;
    bool isFirst = true;
    for (const auto& text : texts) {
        if (!isFirst) {
            result += separator;
        }
        result += text;
        isFirst = false;
    }
    return result;
}

} // namespace menubar
