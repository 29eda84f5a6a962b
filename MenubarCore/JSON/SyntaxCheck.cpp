#include "MenubarCore/JSON/SyntaxCheck.h"

#include "MenubarCore/Text/CodePoints.h"
#include "MenubarCore/Text/Digits.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <vector>

#include <simdjson.h>
#include <unicode/utf16.h>

namespace menubar::SyntaxCheck {

namespace {

class Checker {
public:
    Checker(std::string_view document, std::size_t maximumDepth) : m_document(document), m_maximumDepth(maximumDepth) {}

    std::optional<Fault> run() {
        if (m_document.starts_with("\xEF\xBB\xBF")) {
            fail("unexpected byte-order mark");
        }
        while (!m_fault && m_state != State::done) {
            skipWhiteSpace();
            step();
        }
        return std::move(m_fault);
    }

    /// After a run: the document, its numbers as the parser reads them all.
    [[nodiscard]] std::string rewritten() const { return m_rewritten + std::string(m_document.substr(m_copied)); }

private:
    enum class State { value, valueOrEnd, key, keyOrEnd, separator, done };

    // Each step below is true unless it found the fault.

    bool step() {
        switch (m_state) {
        case State::value: return readValue("expected a value");
        case State::valueOrEnd: return closes() ? close() : readValue(R"(expected a value or "]")");
        case State::key: return readKey("expected a key");
        case State::keyOrEnd: return closes() ? close() : readKey(R"(expected a key or "}")");
        case State::separator: return readSeparator();
        case State::done: return true;
        }
        return true;
    }

    [[nodiscard]] bool atEnd() const { return m_position == m_document.size(); }

    /// The character at the position; NUL, which is no part of the grammar, at the end.
    [[nodiscard]] char current() const { return atEnd() ? '\0' : m_document[m_position]; }

    bool take(char c) {
        if (atEnd() || current() != c) {
            return false;
        }
        ++m_position;
        return true;
    }

    void skipWhiteSpace() {
        m_position = std::min(m_document.find_first_not_of(" \t\n\r", m_position), m_document.size());
    }

    bool fail(std::string problem) { return failAt(m_position, std::move(problem)); }

    bool failAt(std::size_t offset, std::string problem) {
        Fault fault{.problem = std::move(problem), .offset = offset, .atEnd = offset == m_document.size()};
        for (std::size_t position = 0; position < offset;) {
            const bool endsLine = m_document[position] == '\n';
            static_cast<void>(nextCodePoint(m_document, position));
            fault.line += endsLine ? 1 : 0;
            fault.column = endsLine ? 1 : fault.column + 1;
        }
        m_fault = std::move(fault);
        return false;
    }

    [[nodiscard]] bool closes() const { return !atEnd() && current() == m_closers.back(); }

    bool open(char closer) {
        if (m_closers.size() == m_maximumDepth) {
            return fail("more than " + std::to_string(m_maximumDepth) + " containers inside one another");
        }
        ++m_position;
        m_closers.push_back(closer);
        m_state = closer == ']' ? State::valueOrEnd : State::keyOrEnd;
        return true;
    }

    bool close() {
        ++m_position;
        m_closers.pop_back();
        m_state = State::separator;
        return true;
    }

    bool readSeparator() {
        if (m_closers.empty()) {
            m_state = State::done;
            return atEnd() || fail("expected the end of the document");
        }
        if (closes()) {
            return close();
        }
        const bool inArray = m_closers.back() == ']';
        m_state = inArray ? State::value : State::key;
        return take(',') || fail(inArray ? R"(expected "," or "]")" : R"(expected "," or "}")");
    }

    bool readKey(const char* expectation) {
        m_state = State::value;
        if (!take('"')) {
            return fail(expectation);
        }
        if (!readString()) {
            return false;
        }
        skipWhiteSpace();
        return take(':') || fail(R"(expected ":")");
    }

    bool readValue(const char* expectation) {
        m_state = State::separator;
        switch (current()) {
        case '{': return open('}');
        case '[': return open(']');
        case '"': ++m_position; return readString();
        case 't': return readLiteral("true");
        case 'f': return readLiteral("false");
        case 'n': return readLiteral("null");
        default: return current() == '-' || isDigit(current()) ? readNumber() : fail(expectation);
        }
    }

    bool readLiteral(std::string_view literal) {
        if (!m_document.substr(m_position).starts_with(literal)) {
            return fail("expected \"" + std::string(literal) + "\"");
        }
        m_position += literal.size();
        return true;
    }

    bool readDigits() {
        std::string_view rest = m_document.substr(m_position);
        const std::size_t count = takeDigits(rest).size();
        m_position += count;
        return count > 0 || fail("expected a digit");
    }

    bool readWholePart() {
        if (!take('0')) {
            return readDigits();
        }
        return !isDigit(current()) || failAt(m_position - 1, "superfluous leading zero");
    }

    bool readExponent() {
        if (!take('+')) {
            take('-');
        }
        return readDigits();
    }

    bool readNumber() {
        const std::size_t start = m_position;
        take('-');
        if (!readWholePart() || (take('.') && !readDigits()) || ((take('e') || take('E')) && !readExponent())) {
            return false;
        }
        return checkNumber(start, std::string(m_document.substr(start, m_position - start))) ||
               failAt(start, "number beyond the range of a double");
    }

    /// Has the parser read the number, where it might not like it, and if need be notes another way to write it. False
    /// for one beyond double's range, which is all that it refuses once integers are written as doubles.
    bool checkNumber(std::size_t start, const std::string& number) {
        constexpr std::size_t mostDigits = 18; // that fit into 64 bits for certain
        if (number.size() <= mostDigits && number.find_first_of("eE") == std::string::npos) {
            return true;
        }
        double value = 0;
        const auto element = m_numberParser.parse(number);
        if (element.error() != simdjson::SUCCESS) {
            const std::string asDouble = number + "e0";
            const bool isWide = number.find_first_of(".eE") == std::string::npos &&
                                m_numberParser.parse(asDouble).error() == simdjson::SUCCESS;
            if (isWide) {
                rewrite(start, asDouble);
            }
            return isWide;
        }
        if (element.is_double() && element.get(value) == simdjson::SUCCESS && value == -0x1p63) {
            rewrite(start, "-9223372036854775808");
        }
        return true;
    }

    /// Replaces the number that has just been read.
    void rewrite(std::size_t start, std::string_view number) {
        m_rewritten.append(m_document.substr(m_copied, start - m_copied)).append(number);
        m_copied = m_position;
    }

    bool readString() {
        while (!take('"')) {
            if (atEnd()) {
                return fail("expected a closing quotation mark");
            }
            if (!(current() == '\\' ? readEscapeSequence() : readCharacter())) {
                return false;
            }
        }
        return true;
    }

    bool readCharacter() {
        constexpr std::string_view hexDigits = "0123456789ABCDEF";
        const auto byte = static_cast<std::uint8_t>(current());
        if (byte < 0x20) {
            return fail(std::string("unescaped control character U+00") + hexDigits[byte >> 4U] +
                        hexDigits[byte & 0xFU] + " in a string");
        }
        const std::size_t start = m_position;
        return nextCodePoint(m_document, m_position) != illFormed || failAt(start, "invalid UTF-8");
    }

    bool readEscapeSequence() {
        const std::string_view rest = m_document.substr(m_position + 1);
        if (rest.empty() || !std::string_view("\"\\/bfnrtu").contains(rest.front())) {
            return fail("invalid escape");
        }
        m_position += 2;
        return rest.front() != 'u' || readUnicodeEscape();
    }

    /// Reads what follows the "\u", and the other half of a surrogate pair with it.
    bool readUnicodeEscape() {
        const std::size_t start = m_position - 2;
        const auto unit = takeUnit();
        if (!unit) {
            return failAt(start, R"(expected four hexadecimal digits after "\u")");
        }
        std::optional<std::uint16_t> low;
        const bool isPair = U16_IS_LEAD(*unit) && take('\\') && take('u') && (low = takeUnit()) && U16_IS_TRAIL(*low);
        return isPair || !U16_IS_SURROGATE(*unit) || failAt(start, "lone surrogate escape");
    }

    /// Takes four hexadecimal digits.
    std::optional<std::uint16_t> takeUnit() {
        constexpr std::size_t length = 4;
        const std::string_view digits = m_document.substr(m_position, length);
        std::uint16_t unit = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
        if (error != std::errc() || end != digits.data() + length) {
            return std::nullopt;
        }
        m_position += length;
        return unit;
    }

    std::string_view m_document;
    std::size_t m_maximumDepth;
    std::size_t m_position = 0;
    State m_state = State::value;
    std::vector<char> m_closers; ///< what ends each open container, the outermost first
    simdjson::dom::parser m_numberParser;
    std::string m_rewritten; ///< what stands before `m_copied`
    std::size_t m_copied = 0;
    std::optional<Fault> m_fault;
};

} // namespace

std::string Fault::text() const {
    return problem + " at line " + std::to_string(line) + ", column " + std::to_string(column) +
           (atEnd ? ", where the document ends" : "");
}

std::optional<Fault> firstFault(std::string_view document, std::size_t maximumDepth) {
    return Checker(document, maximumDepth).run();
}

std::string withWideIntegersAsDoubles(std::string_view document) {
    Checker checker(document, document.size());
    static_cast<void>(checker.run());
    return checker.rewritten();
}

} // namespace menubar::SyntaxCheck
