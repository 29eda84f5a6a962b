#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Text/CodePoints.h"

#include <cmath>
#include <cstdint>
#include <vector>

namespace menubar {

namespace {

void appendEscaped(std::string& out, char c) {
    constexpr std::string_view escaped = "\"\\/\b\f\n\r\t";
    constexpr std::string_view letters = "\"\\/bfnrt";
    constexpr std::string_view hexDigits = "0123456789abcdef";
    const auto byte = static_cast<std::uint8_t>(c);
    if (const std::size_t place = escaped.find(c); place != std::string_view::npos) {
        out += {'\\', letters[place]};
    } else if (byte < 0x20) {
        out += "\\u00";
        out += {hexDigits[byte >> 4U], hexDigits[byte & 0xFU]};
    } else {
        out += c;
    }
}

/// Ill-formed UTF-8, which a value that was built in code may hold, comes out as U+FFFD.
void appendString(std::string& out, std::string_view text) {
    out += '"';
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t start = position;
        const std::int32_t codePoint = nextCodePoint(text, position);
        if (codePoint >= 0 && codePoint < 0x80) {
            appendEscaped(out, text[start]);
        } else {
            out += codePoint == illFormed ? replacementCharacter : text.substr(start, position - start);
        }
    }
    out += '"';
}

/// A container being written, and the place of what comes next.
struct Frame {
    const JSONValue::Array* array = nullptr;
    const JSONValue::Object* object = nullptr;
    std::size_t next = 0;

    [[nodiscard]] bool atEnd() const { return next == (array != nullptr ? array->size() : object->size()); }
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
        case JSONValue::Case::object: open({.object = value.objectValue()}); return true;
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
        if (frame.next > 0) {
            m_out += ',';
        }
        breakLine();
        if (frame.array != nullptr) {
            return (*frame.array)[frame.next++];
        }
        const auto& [key, value] = frame.object->begin()[static_cast<std::ptrdiff_t>(frame.next++)];
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

std::expected<std::string, EncodingError> JSONValue::encode(JSONLayout layout) const {
    return Writer(layout).write(*this);
}

} // namespace menubar
