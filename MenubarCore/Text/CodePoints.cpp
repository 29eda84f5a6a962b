#include "MenubarCore/Text/CodePoints.h"

#include <algorithm>

#include <unicode/utf8.h>

namespace menubar {

namespace {

/// ICU counts in 32 bits and looks at no more than a sequence.
constexpr std::size_t longestSequence = U8_MAX_LENGTH;

} // namespace

std::int32_t nextCodePoint(std::string_view text, std::size_t& index) {
    const std::string_view ahead = text.substr(index, longestSequence);
    const auto length = static_cast<std::int32_t>(ahead.size());
    std::int32_t taken = 0;
    UChar32 codePoint = 0;
    U8_NEXT(ahead.data(), taken, length, codePoint); // NOLINT(bugprone-inc-dec-in-conditions): ICU's own macro
    index += static_cast<std::size_t>(taken);
    return codePoint < 0 ? illFormed : codePoint;
}

std::int32_t previousCodePoint(std::string_view text, std::size_t& index) {
    const std::size_t start = index - std::min(index, longestSequence);
    const std::string_view behind = text.substr(start, index - start);
    auto left = static_cast<std::int32_t>(behind.size());
    UChar32 codePoint = 0;
    U8_PREV(behind.data(), 0, left, codePoint);
    index = start + static_cast<std::size_t>(left);
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
