#pragma once

#include <string>
#include <string_view>
#include <vector>

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

/// A command for people to read, in words parted by blanks; nothing is quoted. Any thread.
[[nodiscard]] inline std::string commandLine(const std::string& executable, const std::vector<std::string>& arguments) {
    return arguments.empty() ? executable : executable + " " + joined(arguments, " ");
}

} // namespace menubar
