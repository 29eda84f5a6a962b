#include "MenubarCore/JSON/SyntaxCheck.h"

#include "MenubarCore/JSON/NumberToken.h"
#include "MenubarCore/JSON/StringToken.h"
#include "MenubarCore/Text/CodePoints.h"

#include <cstdint>
#include <vector>

namespace menubar::SyntaxCheck {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

class Checker {
public:
    Checker(std::string_view document, std::size_t maximumDepth) : m_document(document), m_maximumDepth(maximumDepth) {}

    std::optional<Fault> run() {
        if (m_document.starts_with("\xEF\xBB\xBF")) {
            fail("unexpected byte-order mark");
        }
        while (!m_fault && m_state != State::done) {
            step();
        }
        return std::move(m_fault);
    }

private:
    enum class State { value, valueOrEnd, key, keyOrEnd, separator, done };

    void step() {
        skipWhiteSpace();
        switch (m_state) {
        case State::value: return readValue("expected a value");
        case State::valueOrEnd: return closes() ? close() : readValue("expected a value or \"]\"");
        case State::key: return readKey("expected a key");
        case State::keyOrEnd: return closes() ? close() : readKey("expected a key or \"}\"");
        case State::separator: return readSeparator();
        case State::done: return;
        }
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
        while (!atEnd() && std::string_view(" \t\n\r").contains(current())) {
            ++m_position;
        }
    }

    void fail(std::string problem) { failAt(m_position, std::move(problem)); }

    void failAt(std::size_t offset, std::string problem) {
        Fault fault{.problem = std::move(problem), .offset = offset, .atEnd = offset == m_document.size()};
        for (std::size_t position = 0; position < offset;) {
            const bool endsLine = m_document[position] == '\n';
            static_cast<void>(nextCodePoint(m_document, position));
            fault.line += endsLine ? 1 : 0;
            fault.column = endsLine ? 1 : fault.column + 1;
        }
        m_fault = std::move(fault);
    }

    [[nodiscard]] bool closes() const { return !atEnd() && current() == m_closers.back(); }

    void open(char closer) {
        if (m_closers.size() == m_maximumDepth) {
            return fail("more than " + std::to_string(m_maximumDepth) + " containers inside one another");
        }
        ++m_position;
        m_closers.push_back(closer);
        m_state = closer == ']' ? State::valueOrEnd : State::keyOrEnd;
    }

    void close() {
        ++m_position;
        m_closers.pop_back();
        m_state = State::separator;
    }

    void readSeparator() {
        if (m_closers.empty()) {
            m_state = State::done;
            return atEnd() ? void() : fail("expected the end of the document");
        }
        if (closes()) {
            return close();
        }
        if (!take(',')) {
            return fail(m_closers.back() == ']' ? "expected \",\" or \"]\"" : "expected \",\" or \"}\"");
        }
        m_state = m_closers.back() == ']' ? State::value : State::key;
    }

    void readKey(const char* expectation) {
        if (!take('"')) {
            return fail(expectation);
        }
        readString();
        skipWhiteSpace();
        if (!m_fault && !take(':')) {
            fail("expected \":\"");
        }
        m_state = State::value;
    }

    void readValue(const char* expectation) {
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

    void readLiteral(std::string_view literal) {
        if (!m_document.substr(m_position).starts_with(literal)) {
            return fail("expected \"" + std::string(literal) + "\"");
        }
        m_position += literal.size();
    }

    void readDigits() {
        if (!isDigit(current())) {
            return fail("expected a digit");
        }
        while (isDigit(current())) {
            ++m_position;
        }
    }

    void readNumber() {
        const std::size_t start = m_position;
        take('-');
        if (take('0')) {
            if (isDigit(current())) {
                return failAt(m_position - 1, "superfluous leading zero");
            }
        } else {
            readDigits();
        }
        if (!m_fault && take('.')) {
            readDigits();
        }
        if (!m_fault && (take('e') || take('E'))) {
            if (!take('+')) {
                take('-');
            }
            readDigits();
        }
        if (m_fault) {
            return;
        }
        const auto token = NumberToken::parse(m_document.substr(start, m_position - start));
        if (token && token->isBeyondDouble()) {
            failAt(start, "number beyond the range of a double");
        }
    }

    void readString() {
        while (!m_fault && !take('"')) {
            if (atEnd()) {
                fail("expected a closing quotation mark");
            } else if (current() == '\\') {
                readEscapeSequence();
            } else {
                readCharacter();
            }
        }
    }

    void readCharacter() {
        constexpr std::string_view hexDigits = "0123456789ABCDEF";
        const auto byte = static_cast<std::uint8_t>(current());
        if (byte < 0x20) {
            return fail(std::string("unescaped control character U+00") + hexDigits[byte >> 4U] +
                        hexDigits[byte & 0xFU] + " in a string");
        }
        const std::size_t start = m_position;
        if (nextCodePoint(m_document, m_position) == illFormed) {
            failAt(start, "invalid UTF-8");
        }
    }

    void readEscapeSequence() {
        const Escape escape = readEscape(m_document, m_position);
        if (!escape.fault) {
            m_position += escape.length;
            return;
        }
        switch (*escape.fault) {
        case EscapeFault::unknownEscape: return fail("invalid escape");
        case EscapeFault::hexDigits: return fail("expected four hexadecimal digits after \"\\u\"");
        case EscapeFault::loneSurrogate: return fail("lone surrogate escape");
        }
    }

    std::string_view m_document;
    std::size_t m_maximumDepth;
    std::size_t m_position = 0;
    State m_state = State::value;
    std::vector<char> m_closers; ///< what ends each open container, the outermost first
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

} // namespace menubar::SyntaxCheck
