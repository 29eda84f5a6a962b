#include "MenubarCore/JSON/ValueReader.h"

#include "MenubarCore/JSON/ParsedDocument.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <iterator>
#include <span>
#include <tuple>
#include <utility>
#include <vector>

namespace menubar {

namespace dom = simdjson::dom;

using Kind = DecodingError::Kind;

namespace {

/// A member of an object being put into the order of keys.
struct Member {
    std::string_view key;
    std::size_t position = 0;
    dom::element value;

    /// By key; of equal keys the last comes first.
    bool operator<(const Member& other) const { return std::tie(key, other.position) < std::tie(other.key, position); }
};

/// Replaces `members` by those of an object, in ascending order of their keys; of duplicate keys the last.
void sortMembers(const dom::object& object, std::vector<Member>& members) {
    members.clear();
    for (const auto [key, value] : object) {
        members.push_back({key, members.size(), value});
    }
    std::ranges::sort(members, std::less());
    const auto rest = std::ranges::unique(members, {}, &Member::key);
    members.erase(rest.begin(), rest.end());
}

/// Makes a tree of values. What is still to be done is kept in a list instead of in calls; the places in it stay where
/// they are when the container around them is moved.
class TreeBuilder {
public:
    JSONValue build(const dom::element& root) {
        JSONValue tree;
        add(root, [&tree](auto value) -> JSONValue& { return tree = value; });
        while (!m_pending.empty()) {
            const auto [from, to] = m_pending.back();
            m_pending.pop_back();
            *to = from.is_array() ? array(from.get_array().value_unsafe()) : object(from.get_object().value_unsafe());
        }
        return tree;
    }

private:
    /// Has a scalar added by `place`; for a container `null`, and the place is noted.
    template <typename Place>
    void add(const dom::element& from, Place place) {
        switch (from.type()) {
        case dom::element_type::STRING: place(from.get_string().value_unsafe()); return;
        case dom::element_type::BOOL: place(from.get_bool().value_unsafe()); return;
        case dom::element_type::INT64:
        case dom::element_type::UINT64:
        case dom::element_type::DOUBLE: place(from.get_double().value_unsafe()); return;
        case dom::element_type::ARRAY:
        case dom::element_type::OBJECT: m_pending.emplace_back(from, &place(nullptr)); return;
        default: place(nullptr); return;
        }
    }

    JSONValue array(const dom::array& elements) {
        JSONValue::Array values;
        values.reserve(static_cast<std::size_t>(std::distance(elements.begin(), elements.end())));
        for (const dom::element element : elements) {
            add(element, [&values](auto value) -> JSONValue& { return values.emplace_back(value); });
        }
        return values;
    }

    JSONValue object(const dom::object& object) {
        sortMembers(object, m_members);
        std::vector<JSONValue::Object::Member> values;
        values.reserve(m_members.size());
        for (const Member& member : m_members) {
            add(member.value, [&](auto value) -> JSONValue& { return values.emplace_back(member.key, value).second; });
        }
        return JSONValue::Object(std::move(values));
    }

    std::vector<std::pair<dom::element, JSONValue*>> m_pending;
    std::vector<Member> m_members;
};

/// The row of `key`. Keys usually come in the order of the table, so the row after the previous one is tried first.
std::size_t findRow(std::span<const FieldRow> rows, std::string_view key, std::size_t next) {
    if (next < rows.size() && rows[next].key == key) {
        return next;
    }
    return static_cast<std::size_t>(std::ranges::find(rows, key, &FieldRow::key) - rows.begin());
}

} // namespace

std::optional<DecodingError> ValueReader::readDocument(std::string_view document, void* target, DocumentRead read) {
    const ParsedDocument parsed(document);
    if (!parsed.problem().empty()) {
        return DecodingError{.kind = Kind::dataCorrupted, .description = parsed.problem()};
    }
    ValueReader reader(parsed);
    if (read(reader, target)) {
        return std::nullopt;
    }
    std::ranges::reverse(reader.m_error.path);
    return std::move(reader.m_error);
}

ValueReader::ValueReader(const ParsedDocument& document) : m_document(&document), m_value(&document.root()) {}

std::size_t ValueReader::documentSize() const {
    return m_document->size();
}

bool ValueReader::failAt(CodingKey step) {
    m_error.path.push_back(std::move(step));
    return false;
}

bool ValueReader::refuse(std::string description) {
    m_error = {.kind = Kind::dataCorrupted, .description = std::move(description)};
    return false;
}

bool ValueReader::refuseNull(std::string_view typeName) {
    m_error = {.kind = Kind::valueNotFound, .expected = std::string(typeName)};
    return false;
}

bool ValueReader::mismatch(Shape::Kind expected) {
    m_error = {.kind = Kind::typeMismatch, .expected = std::string(Shape{.kind = expected}.typeName())};
    return false;
}

bool ValueReader::isNull() const {
    return m_value->is_null();
}

bool ValueReader::read(bool& value) {
    return m_value->get(value) == simdjson::SUCCESS || mismatch(Shape::Kind::boolean);
}

bool ValueReader::read(std::int64_t& value) {
    if (m_value->is_int64()) {
        return m_value->get(value) == simdjson::SUCCESS;
    }
    constexpr double smallest = -0x1p63; // which an integer of more than 64 bits may have become
    double number = 0;
    if (!m_value->is_double() || m_value->get(number) != simdjson::SUCCESS || number != std::trunc(number) ||
        number < smallest || number >= -smallest || (number == smallest && m_document->hasWideIntegers())) {
        return mismatch(Shape::Kind::integer);
    }
    value = static_cast<std::int64_t>(number);
    return true;
}

bool ValueReader::read(double& value) {
    return m_value->get(value) == simdjson::SUCCESS || mismatch(Shape::Kind::number);
}

bool ValueReader::read(std::string& value) {
    const auto text = readText();
    value = std::string(text.value_or(""));
    return text.has_value();
}

bool ValueReader::read(JSONValue& value) {
    value = TreeBuilder().build(*m_value);
    return true;
}

std::optional<std::string_view> ValueReader::readText() {
    std::string_view text;
    if (m_value->get(text) != simdjson::SUCCESS) {
        mismatch(Shape::Kind::text);
        return std::nullopt;
    }
    return text;
}

bool ValueReader::readRecord(const RecordTable& table, void* record) {
    dom::object object;
    if (m_value->get(object) != simdjson::SUCCESS) {
        return mismatch(Shape::Kind::record);
    }
    std::array<dom::element, RecordTable::maximumRows> values;
    std::uint64_t present = 0;
    std::size_t next = 0;
    for (const auto [key, value] : object) {
        const std::size_t row = findRow(table.rows, key, next);
        if (row < table.rows.size()) {
            values[row] = value; // of duplicate keys the last one counts
            present |= std::uint64_t{1} << row;
            next = row + 1;
        }
    }
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
        m_value = (present >> row & 1U) != 0 ? &values[row] : nullptr;
        if (!readMember(table.rows[row], record)) {
            return false;
        }
    }
    return true;
}

/// Reads the current value into the member of `row`; without a current value the key is missing.
bool ValueReader::readMember(const FieldRow& row, void* record) {
    if (m_value == nullptr && row.presence == Presence::required) {
        m_error = {.kind = Kind::keyNotFound, .key = std::string(row.key)};
        return false;
    }
    if (m_value == nullptr || (isNull() && row.presence != Presence::required)) {
        return true;
    }
    return (isNull() ? refuseNull(row.shape->typeName()) : row.read(*this, record)) || failAt({std::string(row.key)});
}

bool ValueReader::readList(void* list, ElementRead element) {
    dom::array array;
    if (m_value->get(array) != simdjson::SUCCESS) {
        return mismatch(Shape::Kind::list);
    }
    const std::size_t count = array.size();
    std::size_t index = 0;
    for (const dom::element value : array) {
        m_value = &value;
        if (!element(*this, list, count)) {
            return failAt({index});
        }
        ++index;
    }
    return true;
}

bool ValueReader::readMap(void* map, EntryRead entry) {
    dom::object object;
    if (m_value->get(object) != simdjson::SUCCESS) {
        return mismatch(Shape::Kind::map);
    }
    std::vector<Member> members;
    sortMembers(object, members);
    for (const Member& member : members) {
        m_value = &member.value;
        if (!entry(*this, map, member.key)) {
            return failAt({std::string(member.key)});
        }
    }
    return true;
}

} // namespace menubar
