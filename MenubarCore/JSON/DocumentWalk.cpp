#include "MenubarCore/JSON/DocumentWalk.h"

#include "MenubarCore/JSON/JSONReader.h"
#include "MenubarCore/JSON/RecordTable.h"
#include "MenubarCore/JSON/StringToken.h"
#include "MenubarCore/JSON/SyntaxCheck.h"
#include "MenubarCore/JSON/ValueBuilder.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <simdjson.h>

namespace menubar {

namespace ondemand = simdjson::ondemand;

namespace {

/// A key of a table and its closing quotation mark may be looked for at the end of the document.
static_assert(RecordTable::maximumKeyLength < simdjson::SIMDJSON_PADDING);

using ArrayPosition = decltype(std::declval<ondemand::array&>().begin());
using ObjectPosition = decltype(std::declval<ondemand::object&>().begin());

bool isWhiteSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

} // namespace

/// What one walk works with. The document's copy stands in brackets, as the one element of an array: so a scalar is
/// read like everything else, and the last bracket closes nothing that the document left open. Zeros follow it, which
/// are part of no token, so that a step beyond the end is an error.
struct DocumentWalk::State {
    ondemand::parser parser;
    ondemand::document document;
    ondemand::array wrapper;
    ondemand::value current;
    ArrayPosition position{};
    std::vector<char> bytes; ///< never shrinks
    std::size_t size = 0;
    std::string scratch; ///< the latest string that holds escapes

    ondemand::parser numberParser; ///< for numbers that are converted apart from the document

    [[nodiscard]] simdjson::error_code convert(const std::string& number, double& value) {
        const simdjson::padded_string text("[" + number + "]");
        ondemand::document numberDocument;
        if (const auto error = numberParser.iterate(text).get(numberDocument)) {
            return error;
        }
        return numberDocument.at(0).get_double().get(value);
    }

    void copyIn(std::string_view text) {
        size = text.size() + 2;
        const std::size_t needed = size + simdjson::SIMDJSON_PADDING;
        if (bytes.size() < needed) {
            bytes = std::vector<char>(needed);
        }
        bytes[0] = '[';
        std::ranges::copy(text, bytes.begin() + 1);
        bytes[size - 1] = ']';
        std::fill_n(bytes.data() + size, simdjson::SIMDJSON_PADDING, '\0');
    }
};

/// A container on the way down. It holds positions of both kinds, of which one is used.
struct DocumentWalk::Level {
    bool isObject = false;
    bool isStarted = false;
    ArrayPosition element{};
    ArrayPosition elementEnd{};
    ObjectPosition member{};
    ObjectPosition memberEnd{};

    [[nodiscard]] simdjson::error_code open(ondemand::value& container, char kind) {
        isObject = kind == '{';
        if (isObject) {
            ondemand::object object;
            if (const auto error = container.get_object().get(object)) {
                return error;
            }
            member = object.begin();
            memberEnd = object.end();
            return member.error();
        }
        ondemand::array array;
        if (const auto error = container.get_array().get(array)) {
            return error;
        }
        element = array.begin();
        elementEnd = array.end();
        return element.error();
    }

    /// Steps to the next element; false at the end.
    [[nodiscard]] bool advance() {
        if (isStarted && isObject) {
            ++member;
        } else if (isStarted) {
            ++element;
        }
        isStarted = true;
        return isObject ? member != memberEnd : element != elementEnd;
    }
};

/// One for the process, taken out while in use: a walk within a walk, or beside it on another thread, makes its own.
/// What it holds at the end is left to the system.
std::atomic<DocumentWalk::State*>& DocumentWalk::spareState() {
    static std::atomic<State*> state;
    return state;
}

std::unique_ptr<DocumentWalk::State> DocumentWalk::takeState() {
    std::unique_ptr<State> spare(spareState().exchange(nullptr, std::memory_order_acquire));
    return spare != nullptr ? std::move(spare) : std::make_unique<State>();
}

DocumentWalk::DocumentWalk(std::string_view document) : m_document(document), m_state(takeState()) {
    m_state->copyIn(document);
    m_nextBackslash = m_state->bytes.data();
    m_broken = !start();
}

DocumentWalk::~DocumentWalk() {
    constexpr std::size_t kept = std::size_t{4} << 20U;
    if (m_state->bytes.size() <= kept) {
        m_state.reset(spareState().exchange(m_state.release(), std::memory_order_acq_rel));
    }
}

bool DocumentWalk::start() {
    State& state = *m_state;
    ArrayPosition end{};
    return succeeds(state.parser.iterate(state.bytes.data(), state.size, state.bytes.size()).get(state.document)) &&
           succeeds(state.document.get_array().get(state.wrapper)) &&
           succeeds((state.position = state.wrapper.begin()).error()) &&
           (state.position != (end = state.wrapper.end()) || breakOff(simdjson::EMPTY)) && moveTo(*state.position);
}

void DocumentWalk::finish() {
    if (m_broken) {
        return;
    }
    ++m_state->position;
    if (m_state->position != m_state->wrapper.end() ||
        m_state->document.current_location().error() != simdjson::OUT_OF_BOUNDS) {
        breakOff(simdjson::TRAILING_CONTENT);
    }
}

std::string DocumentWalk::problem() const {
    const auto fault = SyntaxCheck::firstFault(m_document, JSONReader::maximumDepth);
    return fault ? fault->text() : simdjson::error_message(static_cast<simdjson::error_code>(m_code));
}

/// Ends the walk; false, so that it can be returned.
bool DocumentWalk::breakOff(int code) {
    m_broken = true;
    m_code = code;
    return false;
}

bool DocumentWalk::succeeds(int code) {
    return code == simdjson::SUCCESS || breakOff(code);
}

template <typename Result>
bool DocumentWalk::moveTo(Result value) {
    if (!succeeds(std::move(value).get(m_state->current))) {
        return false;
    }
    m_token = m_state->current.raw_json_token();
    return !m_token.empty() || breakOff(simdjson::TAPE_ERROR);
}

std::string_view DocumentWalk::scalar() const {
    std::size_t size = m_token.size();
    while (size > 0 && isWhiteSpace(m_token[size - 1])) {
        --size;
    }
    return m_token.substr(0, size);
}

std::optional<std::string_view> DocumentWalk::name(Key key) {
    const char* end = m_state->bytes.data() + m_state->size;
    const auto extent = findStringEnd({key.m_text, static_cast<std::size_t>(end - key.m_text)});
    if (!extent) {
        breakOff(simdjson::UNCLOSED_STRING);
        return std::nullopt;
    }
    const std::string_view content(key.m_text, extent->length);
    return extent->hasEscapes ? unescaped(content) : content;
}

/// Whether the current value's token holds a backslash. Values are asked about in the order of the document, so that
/// all the searches together look at each byte once.
bool DocumentWalk::hasBackslash(std::string_view token) {
    const char* end = m_state->bytes.data() + m_state->size;
    if (m_nextBackslash < token.data()) {
        const void* found = std::memchr(token.data(), '\\', static_cast<std::size_t>(end - token.data()));
        m_nextBackslash = found == nullptr ? end : static_cast<const char*>(found);
    }
    return m_nextBackslash < token.data() + token.size();
}

std::optional<std::string_view> DocumentWalk::unescaped(std::string_view raw) {
    if (!unescape(raw, m_state->scratch)) {
        breakOff(simdjson::STRING_ERROR);
        return std::nullopt;
    }
    return m_state->scratch;
}

std::optional<std::string_view> DocumentWalk::text() {
    // The string is stepped over here: left to the parser, one before a colon would count as a key even in an array.
    ondemand::raw_json_string raw;
    if (!succeeds(m_state->current.get_raw_json_string().get(raw))) {
        return std::nullopt;
    }
    const std::string_view token = scalar();
    if (token.size() < 2 || token.back() != '"') {
        breakOff(simdjson::STRING_ERROR);
        return std::nullopt;
    }
    const std::string_view content = token.substr(1, token.size() - 2);
    return hasBackslash(token) ? unescaped(content) : content;
}

std::optional<NumberToken> DocumentWalk::number() {
    const auto parsed = NumberToken::parse(scalar());
    if (!parsed || parsed->isBeyondDouble()) {
        breakOff(simdjson::NUMBER_ERROR);
        return std::nullopt;
    }
    return parsed;
}

std::optional<double> DocumentWalk::nearestDouble() {
    const auto parsed = number();
    if (!parsed) {
        return std::nullopt;
    }
    if (const auto simple = parsed->simpleDouble()) {
        return simple;
    }
    // The parser's conversion of the value in its place overlooks digits beyond the nineteenth after a leading "0.".
    constexpr std::size_t trustedDigits = 19;
    double value = 0;
    if (parsed->digitCount() <= trustedDigits && m_state->current.get_double().get(value) == simdjson::SUCCESS) {
        return value;
    }
    return succeeds(m_state->convert(parsed->canonicalText(), value)) ? std::optional(value) : std::nullopt;
}

bool DocumentWalk::checkScalar() {
    switch (kind()) {
    case '"': return text().has_value();
    case 't': return isLiteral("true") || breakOff(simdjson::T_ATOM_ERROR);
    case 'f': return isLiteral("false") || breakOff(simdjson::F_ATOM_ERROR);
    case 'n': return isLiteral("null") || breakOff(simdjson::N_ATOM_ERROR);
    default: return isNumber() ? number().has_value() : breakOff(simdjson::TAPE_ERROR);
    }
}

std::optional<JSONValue> DocumentWalk::scalarValue() {
    if (kind() == '"') {
        const auto string = text();
        return string ? std::optional<JSONValue>(*string) : std::nullopt;
    }
    if (isNumber()) {
        const auto number = nearestDouble();
        return number ? std::optional<JSONValue>(*number) : std::nullopt;
    }
    if (!checkScalar()) {
        return std::nullopt;
    }
    return kind() == 'n' ? JSONValue(nullptr) : JSONValue(kind() == 't');
}

bool DocumentWalk::enterContainer() {
    if (m_depth == JSONReader::maximumDepth) {
        return breakOff(simdjson::DEPTH_ERROR);
    }
    ++m_depth;
    return true;
}

bool DocumentWalk::walkArray(void* context, bool (*visit)(void* context)) {
    ondemand::array array;
    if (m_broken || !enterContainer() || !succeeds(m_state->current.get_array().get(array))) {
        return false;
    }
    for (auto element : array) {
        if (!moveTo(element) || !visit(context) || m_broken) {
            return false;
        }
    }
    --m_depth;
    return true;
}

bool DocumentWalk::walkObject(void* context, bool (*visit)(void* context, Key key)) {
    ondemand::object object;
    if (m_broken || !enterContainer() || !succeeds(m_state->current.get_object().get(object))) {
        return false;
    }
    for (auto member : object) {
        ondemand::raw_json_string key;
        if (!succeeds(member.key().get(key)) || !moveTo(member.value()) || !visit(context, Key(key.raw())) ||
            m_broken) {
            return false;
        }
    }
    --m_depth;
    return true;
}

/// Walks through the current value, a container, and everything in it.
template <typename Visitor>
bool DocumentWalk::walkDeep(Visitor& visitor) {
    const auto isContainer = [this] { return kind() == '{' || kind() == '['; };
    std::vector<Level> levels;
    const auto open = [&] {
        visitor.open(kind());
        return enterContainer() && succeeds(levels.emplace_back().open(m_state->current, kind()));
    };
    if (!open()) {
        return false;
    }
    while (!levels.empty()) {
        Level& level = levels.back();
        if (!level.advance()) {
            levels.pop_back();
            visitor.close();
            --m_depth;
            continue;
        }
        if (level.isObject) {
            auto member = *level.member;
            ondemand::raw_json_string raw;
            if (!succeeds(member.key().get(raw)) || !moveTo(member.value())) {
                return false;
            }
            const auto key = name(Key(raw.raw()));
            if (!key) {
                return false;
            }
            visitor.key(*key);
        } else if (!moveTo(*level.element)) {
            return false;
        }
        if (!(isContainer() ? open() : visitor.scalar(*this))) {
            return false;
        }
    }
    return true;
}

bool DocumentWalk::check() {
    struct Inspection {
        void open(char /*kind*/) {}

        void close() {}

        void key(std::string_view /*name*/) {}

        static bool scalar(DocumentWalk& walk) { return walk.checkScalar(); }
    };

    if (m_broken) {
        return false;
    }
    Inspection inspection;
    return kind() == '{' || kind() == '[' ? walkDeep(inspection) : checkScalar();
}

std::optional<JSONValue> DocumentWalk::value() {
    struct Building {
        ValueBuilder builder;

        void open(char kind) { kind == '{' ? builder.openObject() : builder.openArray(); }

        void close() { builder.close(); }

        void key(std::string_view name) { builder.key(std::string(name)); }

        bool scalar(DocumentWalk& walk) {
            auto value = walk.scalarValue();
            if (value) {
                builder.add(std::move(*value));
            }
            return value.has_value();
        }
    };

    if (m_broken) {
        return std::nullopt;
    }
    if (kind() != '{' && kind() != '[') {
        return scalarValue();
    }
    Building building;
    return walkDeep(building) ? std::optional(building.builder.take()) : std::nullopt;
}

} // namespace menubar
