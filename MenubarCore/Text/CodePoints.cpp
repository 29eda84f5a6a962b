#include "MenubarCore/Text/CodePoints.h"

#include <algorithm>

namespace menubar {

namespace {

/// What the byte that begins a sequence says about the bytes after it.
struct Lead {
    int trailing = 0;              // bytes to follow
    std::int32_t bits = illFormed; // its share of the code point; `illFormed` when no sequence begins so
    unsigned char lower = 0x80;    // bounds of the first byte to follow, which shut out
    unsigned char upper = 0xBF;    // overlong forms, surrogates and what is beyond U+10FFFF
};

constexpr Lead leadOf(unsigned char byte) {
    if (byte >= 0xC2 && byte <= 0xDF) {
        return {.trailing = 1, .bits = byte & 0x1F};
    }
    if (byte >= 0xE0 && byte <= 0xEF) {
        const unsigned char lower = byte == 0xE0 ? 0xA0 : 0x80;
        const unsigned char upper = byte == 0xED ? 0x9F : 0xBF;
        return {.trailing = 2, .bits = byte & 0x0F, .lower = lower, .upper = upper};
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        const unsigned char lower = byte == 0xF0 ? 0x90 : 0x80;
        const unsigned char upper = byte == 0xF4 ? 0x8F : 0xBF;
        return {.trailing = 3, .bits = byte & 0x07, .lower = lower, .upper = upper};
    }
    return {};
}

bool isTrailing(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

} // namespace

std::int32_t nextCodePoint(std::string_view text, std::size_t& index) {
    const auto first = static_cast<unsigned char>(text[index++]);
    if (first < 0x80) {
        return first;
    }
    Lead lead = leadOf(first);
    for (; lead.trailing > 0; --lead.trailing) {
        const auto byte = index < text.size() ? static_cast<unsigned char>(text[index]) : 0;
        if (byte < lead.lower || byte > lead.upper) {
            return illFormed;
        }
        lead = {.trailing = lead.trailing, .bits = lead.bits << 6 | (byte & 0x3F)};
        ++index;
    }
    return lead.bits;
}

std::int32_t previousCodePoint(std::string_view text, std::size_t& index) {
    constexpr std::size_t longestSequence = 4;
    const std::size_t end = index;
    const std::size_t earliest = end - std::min(end, longestSequence);
    std::size_t start = end - 1;
    while (start > earliest && isTrailing(text[start])) {
        --start;
    }
    std::size_t reached = start;
    const std::int32_t codePoint = nextCodePoint(text, reached);
    if (reached == end) {
        index = start;
        return codePoint;
    }
    index = end - 1; // a stray trailing byte
    return illFormed;
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
