#include "MenubarCore/Text/DisplayColumns.h"

#include "MenubarCore/Text/CodePoints.h"

#include <cstdint>

#include <unicode/uchar.h>

namespace menubar {

namespace {

constexpr std::int32_t softHyphen = 0x00AD; // a format character that terminals draw
constexpr std::int32_t joiner = 0x200D;
constexpr std::int32_t emojiSelector = 0xFE0F; // asks for the picture of a character that also has a plain form

bool isZeroWidth(std::int32_t codePoint) {
    if (codePoint == softHyphen) {
        return false;
    }
    // The vowels and finals of a Hangul syllable join the consonant before them.
    if (codePoint >= 0x1160 && codePoint <= 0x11FF) {
        return true;
    }
    const auto type = u_charType(codePoint);
    return type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_FORMAT_CHAR;
}

std::size_t columnsOf(std::int32_t codePoint) {
    if (codePoint >= 0x20 && codePoint < 0x7F) {
        return 1;
    }
    if (codePoint == illFormed) {
        return 1;
    }
    if (isZeroWidth(codePoint)) {
        return 0;
    }
    const int width = u_getIntPropertyValue(codePoint, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

/// A base character with what is drawn upon it.
struct Cell {
    std::size_t end;     ///< in the text
    std::size_t columns; ///< 0...2; more only for joined emoji
};

Cell cellAt(std::string_view text, std::size_t index) {
    std::int32_t previous = nextCodePoint(text, index);
    Cell cell{.end = index, .columns = columnsOf(previous)};
    while (index < text.size()) {
        const std::int32_t codePoint = nextCodePoint(text, index);
        const std::size_t columns = columnsOf(codePoint);
        if (columns != 0 && previous != joiner) {
            break;
        }
        cell.columns += columns;
        if (codePoint == emojiSelector && cell.columns == 1) {
            cell.columns = 2;
        }
        cell.end = index;
        previous = codePoint;
    }
    return cell;
}

} // namespace

std::size_t displayColumns(std::string_view text) {
    std::size_t columns = 0;
    for (std::size_t index = 0; index < text.size();) {
        const Cell cell = cellAt(text, index);
        columns += cell.columns;
        index = cell.end;
    }
    return columns;
}

std::string fittedToColumns(std::string_view text, std::size_t columns) {
    std::size_t used = 0;
    std::size_t cut = 0; // the end of what fits together with the ellipsis
    for (std::size_t index = 0; index < text.size();) {
        const Cell cell = cellAt(text, index);
        used += cell.columns;
        if (used > columns) {
            return columns == 0 ? std::string() : std::string(text.substr(0, cut)) + "…";
        }
        index = cell.end;
        if (used + 1 <= columns) {
            cut = index;
        }
    }
    return std::string(text);
}

} // namespace menubar
