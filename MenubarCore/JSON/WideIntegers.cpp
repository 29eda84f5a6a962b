#include "MenubarCore/JSON/WideIntegers.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <system_error>

namespace menubar {

namespace {

constexpr std::string_view numberCharacters = "+-.0123456789Ee";

template <typename Integer>
bool isOutOfRange(std::string_view digits) {
    Integer value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return end == digits.data() + digits.size() && error == std::errc::result_out_of_range;
}

bool isWideInteger(std::string_view token) {
    return token.starts_with('-') ? isOutOfRange<std::int64_t>(token) : isOutOfRange<std::uint64_t>(token);
}

/// The length of what stands at the start of `text`: a string, a row of the characters of numbers, or one character.
std::size_t tokenLength(std::string_view text) {
    if (text.front() != '"') {
        return std::clamp<std::size_t>(text.find_first_not_of(numberCharacters), 1, text.size());
    }
    std::size_t position = text.find_first_of("\"\\", 1);
    while (position < text.size() && text[position] == '\\') {
        position = text.find_first_of("\"\\", position + 2);
    }
    return position < text.size() ? position + 1 : text.size();
}

} // namespace

std::string withWideIntegersAsDoubles(std::string_view document) {
    std::string text;
    text.reserve(document.size());
    while (!document.empty()) {
        const std::string_view token = document.substr(0, tokenLength(document));
        text += token;
        text += isWideInteger(token) ? "e0" : "";
        document.remove_prefix(token.size());
    }
    return text;
}

} // namespace menubar
