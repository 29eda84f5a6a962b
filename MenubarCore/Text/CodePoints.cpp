#include "MenubarCore/Text/CodePoints.h"

#include <algorithm>

#include <unicode/utf8.h>

namespace menubar {

namespace {

/// The widest window that the macros below may look at from either side.
constexpr std::size_t longestSequence = 4;

} // namespace

std::int32_t nextCodePoint(std::string_view text, std::size_t& index) {
    const std::string_view window = text.substr(index, longestSequence);
    const auto length = static_cast<std::int32_t>(window.size());
    std::int32_t position = 0;
    UChar32 codePoint = 0;
    U8_NEXT(window.data(), position, length, codePoint);
    index += static_cast<std::size_t>(position);
    return codePoint < 0 ? illFormed : codePoint;
}

std::int32_t previousCodePoint(std::string_view text, std::size_t& index) {
    const std::size_t start = index - std::min(index, longestSequence);
    const auto* window = reinterpret_cast<const std::uint8_t*>(text.data() + start);
    auto position = static_cast<std::int32_t>(index - start);
    UChar32 codePoint = 0;
    U8_PREV(window, 0, position, codePoint);
    index = start + static_cast<std::size_t>(position);
    return codePoint < 0 ? illFormed : codePoint;
}

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string wellFormed(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t index = 0; index < text.size();) {
        const std::size_t start = index;
        result += nextCodePoint(text, index) == illFormed ? replacementCharacter : text.substr(start, index - start);
    }
    return result;
}

} // namespace menubar
