#include "MenubarCore/JSON/StringToken.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace menubar {

namespace {

using Word = std::uint64_t;

constexpr Word repeated(char c) {
    return 0x0101010101010101ULL * static_cast<std::uint8_t>(c);
}

/// Bit 7 of each byte of `word` that equals the byte repeated in `pattern`; bytes above the first match may lie.
constexpr Word matches(Word word, Word pattern) {
    const Word difference = word ^ pattern;
    return (difference - repeated(1)) & ~difference & repeated('\x80');
}

/// The index of the first quotation mark or backslash from `position` on; the size when there is none.
std::size_t findMark(std::string_view text, std::size_t position) {
    if constexpr (std::endian::native == std::endian::little) {
        for (; position + sizeof(Word) <= text.size(); position += sizeof(Word)) {
            Word word = 0;
            std::memcpy(&word, text.data() + position, sizeof(Word));
            const Word found = matches(word, repeated('"')) | matches(word, repeated('\\'));
            if (found != 0) {
                return position + (static_cast<std::size_t>(std::countr_zero(found)) / 8);
            }
        }
    }
    while (position < text.size() && text[position] != '"' && text[position] != '\\') {
        ++position;
    }
    return position;
}

/// The four hexadecimal digits at the start of `text`.
std::optional<char32_t> hexadecimal(std::string_view text) {
    if (text.size() < 4) {
        return std::nullopt;
    }
    char32_t value = 0;
    for (const char c : text.substr(0, 4)) {
        const auto byte = static_cast<char32_t>(static_cast<std::uint8_t>(c));
        value *= 16;
        if (byte >= U'0' && byte <= U'9') {
            value += byte - U'0';
        } else if ((byte >= U'a' && byte <= U'f') || (byte >= U'A' && byte <= U'F')) {
            value += (byte | 0x20U) - U'a' + 10;
        } else {
            return std::nullopt;
        }
    }
    return value;
}

constexpr std::size_t unicodeEscapeLength = 6;

bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

Escape shortEscape(char32_t codePoint) {
    return {.codePoint = codePoint, .length = 2};
}

Escape readUnicodeEscape(std::string_view text, std::size_t position) {
    const std::optional<char32_t> unit = hexadecimal(text.substr(position + 2));
    if (!unit) {
        return {.length = 2, .fault = EscapeFault::hexDigits};
    }
    const std::size_t next = position + unicodeEscapeLength;
    if (isHighSurrogate(*unit) && text.substr(next).starts_with("\\u")) {
        const std::optional<char32_t> low = hexadecimal(text.substr(next + 2));
        if (low && isLowSurrogate(*low)) {
            return {.codePoint = 0x10000 + ((*unit - 0xD800) << 10U) + (*low - 0xDC00),
                    .length = 2 * unicodeEscapeLength};
        }
    }
    if (isHighSurrogate(*unit) || isLowSurrogate(*unit)) {
        return {.length = unicodeEscapeLength, .fault = EscapeFault::loneSurrogate};
    }
    return {.codePoint = *unit, .length = unicodeEscapeLength};
}

void appendUtf8(std::string& out, char32_t codePoint) {
    const auto continuation = [codePoint](unsigned shift) {
        return static_cast<char>(0x80U | ((codePoint >> shift) & 0x3FU));
    };
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += {static_cast<char>(0xC0U | (codePoint >> 6U)), continuation(0)};
    } else if (codePoint < 0x10000) {
        out += {static_cast<char>(0xE0U | (codePoint >> 12U)), continuation(6), continuation(0)};
    } else {
        out += {static_cast<char>(0xF0U | (codePoint >> 18U)), continuation(12), continuation(6), continuation(0)};
    }
}

} // namespace

std::optional<StringExtent> findStringEnd(std::string_view text) {
    StringExtent extent;
    extent.length = findMark(text, 0);
    while (extent.length < text.size() && text[extent.length] == '\\') {
        extent.hasEscapes = true;
        extent.length = findMark(text, extent.length + 2);
    }
    return extent.length < text.size() ? std::optional(extent) : std::nullopt;
}

Escape readEscape(std::string_view text, std::size_t position) {
    const char letter = position + 1 < text.size() ? text[position + 1] : '\0';
    switch (letter) {
    case '"':
    case '\\':
    case '/': return shortEscape(static_cast<char32_t>(letter));
    case 'b': return shortEscape(U'\b');
    case 'f': return shortEscape(U'\f');
    case 'n': return shortEscape(U'\n');
    case 'r': return shortEscape(U'\r');
    case 't': return shortEscape(U'\t');
    case 'u': return readUnicodeEscape(text, position);
    default: return {.length = 1, .fault = EscapeFault::unknownEscape};
    }
}

bool unescape(std::string_view raw, std::string& out) {
    out.clear();
    std::size_t position = 0;
    while (true) {
        const std::size_t backslash = raw.find('\\', position);
        out.append(raw.substr(position, backslash - position));
        if (backslash == std::string_view::npos) {
            return true;
        }
        const Escape escape = readEscape(raw, backslash);
        if (escape.fault) {
            return false;
        }
        appendUtf8(out, escape.codePoint);
        position = backslash + escape.length;
    }
}

} // namespace menubar
