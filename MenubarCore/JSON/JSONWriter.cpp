#include "MenubarCore/JSON/JSONWriter.h"

#include "MenubarCore/Text/CodePoints.h"

#include <cmath>
#include <cstdint>
#include <vector>

namespace menubar::JSONWriter {

namespace {

/// The letter after the backslash of a short escape, 0 where there is none.
char shortEscape(char c) {
    switch (c) {
    case '"':
    case '\\':
    case '/': return c;
    case '\b': return 'b';
    case '\f': return 'f';
    case '\n': return 'n';
    case '\r': return 'r';
    case '\t': return 't';
    default: return 0;
    }
}

void appendEscaped(std::string& out, char c) {
    constexpr std::string_view hexDigits = "0123456789abcdef";
    const auto byte = static_cast<std::uint8_t>(c);
    if (const char letter = shortEscape(c); letter != 0) {
        out += {'\\', letter};
    } else if (byte < 0x20) {
        out += "\\u00";
        out += {hexDigits[byte >> 4U], hexDigits[byte & 0xFU]};
    } else {
        out += c;
    }
}

/// A container being written: the next element is the one at `index` (array) or at `member` (object).
struct Frame {
    const JSONValue::Array* array = nullptr;
    const JSONValue::Object* object = nullptr;
    std::size_t index = 0;
    JSONValue::Object::const_iterator member{};

    [[nodiscard]] bool atEnd() const { return array != nullptr ? index == array->size() : member == object->end(); }

    [[nodiscard]] bool atStart() const { return array != nullptr ? index == 0 : member == object->begin(); }
};

class Writer {
public:
    explicit Writer(JSONLayout layout) : m_pretty(layout == JSONLayout::pretty) {}

    std::expected<std::string, EncodingError> write(const JSONValue& value) {
        if (!begin(value)) {
            return std::unexpected(EncodingError::nonFiniteNumber);
        }
        while (!m_open.empty()) {
            if (m_open.back().atEnd()) {
                close();
            } else if (!begin(next())) {
                return std::unexpected(EncodingError::nonFiniteNumber);
            }
        }
        return std::move(m_out);
    }

private:
    /// Writes a scalar or an empty container whole, opens any other container. False for a number without JSON form.
    bool begin(const JSONValue& value) {
        switch (value.kind()) {
        case JSONValue::Case::bool_: m_out += *value.boolValue() ? "true" : "false"; return true;
        case JSONValue::Case::null: m_out += "null"; return true;
        case JSONValue::Case::string: appendString(m_out, *value.stringValue()); return true;
        case JSONValue::Case::number:
            if (!std::isfinite(*value.numberValue())) {
                return false;
            }
            m_out += JSONValue::format(*value.numberValue());
            return true;
        case JSONValue::Case::array: open({.array = value.arrayValue()}); return true;
        case JSONValue::Case::object:
            open({.object = value.objectValue(), .member = value.objectValue()->begin()});
            return true;
        }
        return true;
    }

    void open(const Frame& frame) {
        m_out += frame.array != nullptr ? '[' : '{';
        if (frame.atEnd()) {
            m_out += frame.array != nullptr ? ']' : '}';
        } else {
            m_open.push_back(frame);
        }
    }

    void close() {
        const bool isArray = m_open.back().array != nullptr;
        m_open.pop_back();
        breakLine();
        m_out += isArray ? ']' : '}';
    }

    /// Writes what stands before the innermost container's next element, and steps over it.
    const JSONValue& next() {
        Frame& frame = m_open.back();
        if (!frame.atStart()) {
            m_out += ',';
        }
        breakLine();
        if (frame.array != nullptr) {
            return (*frame.array)[frame.index++];
        }
        const auto& [key, value] = *frame.member++;
        appendString(m_out, key);
        m_out += m_pretty ? " : " : ":";
        return value;
    }

    void breakLine() {
        if (m_pretty) {
            m_out += '\n';
            m_out.append(2 * m_open.size(), ' ');
        }
    }

    bool m_pretty;
    std::string m_out;
    std::vector<Frame> m_open;
};

} // namespace

void appendString(std::string& out, std::string_view text) {
    out += '"';
    for (std::size_t position = 0; position < text.size();) {
        if (static_cast<std::uint8_t>(text[position]) < 0x80) {
            appendEscaped(out, text[position]);
            ++position;
            continue;
        }
        const std::size_t start = position;
        const bool isWellFormed = nextCodePoint(text, position) != illFormed;
        out += isWellFormed ? text.substr(start, position - start) : replacementCharacter;
    }
    out += '"';
}

std::expected<std::string, EncodingError> write(const JSONValue& value, JSONLayout layout) {
    return Writer(layout).write(value);
}

} // namespace menubar::JSONWriter
