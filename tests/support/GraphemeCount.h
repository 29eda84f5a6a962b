#pragma once

#include "MenubarCore/Text/Graphemes.h"

#include <cstddef>
#include <string_view>

namespace menubar {

/// How many characters come off the text's beginning one by one.
[[nodiscard]] inline std::size_t graphemeCount(std::string_view text) {
    std::size_t count = 0;
    for (; !text.empty(); ++count) {
        text.remove_prefix(graphemePrefix(text, 1).size());
    }
    return count;
}

} // namespace menubar
