#include "MenubarCore/Text/Case.h"

#include "MenubarCore/Text/CodePoints.h"

#include <cstdint>
#include <limits>
#include <utility>

#include <unicode/ucasemap.h>
#include <unicode/uchar.h>

namespace menubar {

namespace {

using Mapping = std::int32_t(const UCaseMap*, char*, std::int32_t, const char*, std::int32_t, UErrorCode*);

/// The root locale's mapping; immutable, so one serves every thread for the life of the process.
const UCaseMap* rootCaseMap() {
    static const UCaseMap* const map = [] {
        UErrorCode error = U_ZERO_ERROR;
        return ucasemap_open("", 0, &error);
    }();
    return map;
}

/// `text` as it stands where ICU cannot map it: no data, or beyond its 32-bit lengths.
std::string mapped(std::string text, Mapping* mapping) {
    constexpr std::size_t growth = 3; // of no character more: one becomes three of the same length at most
    const UCaseMap* const map = rootCaseMap();
    std::string result(text.size() * growth, '\0');
    if (map == nullptr || std::cmp_greater(result.size(), std::numeric_limits<std::int32_t>::max())) {
        return text;
    }
    UErrorCode error = U_ZERO_ERROR;
    const std::int32_t length = mapping(map, result.data(), static_cast<std::int32_t>(result.size()), text.data(),
                                        static_cast<std::int32_t>(text.size()), &error);
    if (U_FAILURE(error)) {
        return text;
    }
    result.resize(static_cast<std::size_t>(length));
    return result;
}

bool isWhiteSpace(std::int32_t codePoint) {
    if (codePoint == illFormed) {
        return false;
    }
    const bool isControlSpace = (codePoint >= 0x09 && codePoint <= 0x0D) || codePoint == 0x85;
    return isControlSpace || (U_GET_GC_MASK(codePoint) & U_GC_Z_MASK) != 0;
}

} // namespace

std::string lowercased(std::string_view text) {
    return mapped(wellFormed(text), ucasemap_utf8ToLower);
}

std::string uppercased(std::string_view text) {
    return mapped(wellFormed(text), ucasemap_utf8ToUpper);
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty()) {
        std::size_t index = 0;
        if (!isWhiteSpace(nextCodePoint(text, index))) {
            break;
        }
        text.remove_prefix(index);
    }
    while (!text.empty()) {
        std::size_t index = text.size();
        if (!isWhiteSpace(previousCodePoint(text, index))) {
            break;
        }
        text = text.substr(0, index);
    }
    return text;
}

} // namespace menubar
