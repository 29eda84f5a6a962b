#include "MenubarCore/Text/DisplayText.h"

#include "MenubarCore/Text/CodePoints.h"
#include "MenubarCore/Text/Graphemes.h"

namespace menubar {

namespace {

bool isUnsafe(std::int32_t codePoint) {
    const auto isIn = [codePoint](std::int32_t first, std::int32_t last) {
        return codePoint >= first && codePoint <= last;
    };
    return codePoint == illFormed || isIn(0x00, 0x1F) || isIn(0x7F, 0x9F) || codePoint == 0x061C ||
           isIn(0x200E, 0x200F) || isIn(0x2028, 0x202E) || isIn(0x2066, 0x2069);
}

} // namespace

std::string displayText(std::string_view text, LineFeeds lineFeeds) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t index = 0; index < text.size();) {
        const std::size_t start = index;
        const std::int32_t codePoint = nextCodePoint(text, index);
        const bool isKept = !isUnsafe(codePoint) || (codePoint == '\n' && lineFeeds == LineFeeds::keep);
        result += isKept ? text.substr(start, index - start) : replacementCharacter;
    }
    return result;
}

std::string displayTitle(std::string_view text) {
    return cutToGraphemes(displayText(text), displayTitleLimit);
}

std::string quoted(std::string_view text) {
    return "\"" + displayTitle(text) + "\"";
}

} // namespace menubar
