#include "MenubarCore/Text/Graphemes.h"

#include "MenubarCore/Text/CodePoints.h"

#include <cstdint>
#include <limits>
#include <memory>

#include <unicode/ubrk.h>
#include <unicode/utext.h>

namespace menubar {

namespace {

struct CloseBreakIterator {
    void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
};

struct CloseText {
    void operator()(UText* text) const { utext_close(text); }
};

using BreakIterator = std::unique_ptr<UBreakIterator, CloseBreakIterator>;

/// A break iterator of one's own. Opening one costs more than any text it is used on, so the process opens one, which
/// never changes and is never closed, and copies it. Null when ICU has no data.
BreakIterator characterIterator() {
    static const UBreakIterator* const prototype = [] {
        UErrorCode error = U_ZERO_ERROR;
        return ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &error);
    }();
    UErrorCode error = U_ZERO_ERROR;
    return BreakIterator(prototype == nullptr ? nullptr : ubrk_clone(prototype, &error));
}

bool isAsciiAt(std::string_view text, std::size_t index) {
    return static_cast<unsigned char>(text[index]) < 0x80;
}

/// Steps from boundary to boundary. Between two ASCII characters there always is one, but for CR LF, so only what lies
/// next to other characters is left to ICU.
class Walk {
public:
    explicit Walk(std::string_view text) : m_text(text) {}

    /// The end of the character that begins at the boundary `start`, which lies below the text's size.
    std::size_t next(std::size_t start) {
        const std::size_t end = start + 1;
        if (isAsciiAt(m_text, start) && (end == m_text.size() || isAsciiAt(m_text, end))) {
            const bool isLineBreak = m_text.substr(start, 2) == "\r\n";
            return isLineBreak ? start + 2 : end;
        }
        return attach() ? following(start) : endOfCodePoint(start);
    }

private:
    /// Not for a text whose length ICU cannot count, nor where it has no data.
    bool attach() {
        if (m_iterator != nullptr || m_text.size() > std::numeric_limits<std::int32_t>::max()) {
            return m_iterator != nullptr;
        }
        m_iterator = characterIterator();
        if (m_iterator == nullptr) {
            return false;
        }
        UErrorCode error = U_ZERO_ERROR;
        const std::unique_ptr<UText, CloseText> text(
            utext_openUTF8(nullptr, m_text.data(), static_cast<std::int64_t>(m_text.size()), &error));
        ubrk_setUText(m_iterator.get(), text.get(), &error); // keeps its own shallow copy
        if (U_FAILURE(error)) {
            m_iterator = nullptr;
        }
        return m_iterator != nullptr;
    }

    std::size_t following(std::size_t start) {
        const std::int32_t end = ubrk_following(m_iterator.get(), static_cast<std::int32_t>(start));
        return end == UBRK_DONE ? m_text.size() : static_cast<std::size_t>(end);
    }

    [[nodiscard]] std::size_t endOfCodePoint(std::size_t index) const {
        static_cast<void>(nextCodePoint(m_text, index));
        return index;
    }

    std::string_view m_text;
    BreakIterator m_iterator; // null until the first character that needs it
};

} // namespace

std::string_view graphemePrefix(std::string_view text, std::size_t count) {
    if (text.size() <= count) {
        return text; // no character is shorter than a byte
    }
    Walk walk(text);
    std::size_t index = 0;
    for (; index < text.size() && count > 0; --count) {
        index = walk.next(index);
    }
    return text.substr(0, index);
}

std::string cutToGraphemes(std::string text, std::size_t limit) {
    if (graphemePrefix(text, limit).size() < text.size()) {
        text.resize(graphemePrefix(text, limit - 1).size());
        text += "…";
    }
    return text;
}

} // namespace menubar
