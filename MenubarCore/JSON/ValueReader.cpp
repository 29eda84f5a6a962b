#include "MenubarCore/JSON/ValueReader.h"

#include "MenubarCore/JSON/DocumentWalk.h"

#include <algorithm>
#include <bit>
#include <map>
#include <span>
#include <utility>
#include <vector>

namespace menubar {

using Kind = DecodingError::Kind;

std::optional<DecodingError> ValueReader::readDocument(std::string_view document, void* target, DocumentRead read) {
    DocumentWalk walk(document);
    ValueReader reader(walk);
    if (!walk.isBroken() && !read(reader, target) && !walk.isBroken()) {
        std::ranges::reverse(reader.m_error->path);
    }
    walk.finish();
    if (walk.isBroken()) {
        return DecodingError{.kind = Kind::dataCorrupted, .description = walk.problem()};
    }
    return reader.m_error == nullptr ? std::nullopt : std::optional(std::move(*reader.m_error));
}

bool ValueReader::leave(Error error) {
    m_error = std::move(error);
    return m_error == nullptr;
}

ValueReader::Error ValueReader::takeError(CodingKey step) {
    Error error = std::move(m_error);
    error->path.push_back(std::move(step));
    return error;
}

bool ValueReader::refuse(std::string description) {
    return leave(std::make_unique<DecodingError>(Kind::dataCorrupted, "", "", std::move(description)));
}

bool ValueReader::refuseNull(std::string_view typeName) {
    return leave(std::make_unique<DecodingError>(Kind::valueNotFound, std::string(typeName)));
}

bool ValueReader::mismatch(Shape::Kind expected) {
    return m_walk.check() &&
           leave(std::make_unique<DecodingError>(Kind::typeMismatch, std::string(Shape{.kind = expected}.typeName())));
}

bool ValueReader::isNull() const {
    return m_walk.isLiteral("null");
}

bool ValueReader::read(bool& value) {
    value = m_walk.isLiteral("true");
    return value || m_walk.isLiteral("false") || mismatch(Shape::Kind::boolean);
}

bool ValueReader::read(std::int64_t& value) {
    if (!m_walk.isNumber()) {
        return mismatch(Shape::Kind::integer);
    }
    const auto number = m_walk.number();
    if (!number) {
        return false;
    }
    const auto integer = number->integer();
    value = integer.value_or(0);
    return integer || mismatch(Shape::Kind::integer);
}

bool ValueReader::read(double& value) {
    if (!m_walk.isNumber()) {
        return mismatch(Shape::Kind::number);
    }
    const auto number = m_walk.nearestDouble();
    value = number.value_or(0);
    return number.has_value();
}

bool ValueReader::read(std::string& value) {
    const auto text = readText();
    if (text) {
        value = std::string(*text);
    }
    return text.has_value();
}

bool ValueReader::read(JSONValue& value) {
    auto whole = m_walk.value();
    if (whole) {
        value = std::move(*whole);
    }
    return whole.has_value();
}

std::optional<std::string_view> ValueReader::readText() {
    if (m_walk.kind() != '"') {
        mismatch(Shape::Kind::text);
        return std::nullopt;
    }
    return m_walk.text();
}

/// One object being read into a record. Keys usually come in the order of the table, so the row after the previous
/// one is tried first.
class ValueReader::RecordRead {
public:
    RecordRead(ValueReader& reader, const RecordTable& table, void* record)
        : m_reader(reader), m_table(table), m_record(record) {}

    /// Reads the current value, the member `key`. False when the document is broken.
    bool readMember(DocumentWalk::Key key) {
        const std::span<const FieldRow> rows = m_table.rows;
        if (m_next < rows.size() && key.isWritten(rows[m_next].key)) {
            return readRow(m_next);
        }
        const auto name = m_reader.m_walk.name(key);
        if (!name) {
            return false;
        }
        const auto row = std::ranges::find(rows, *name, &FieldRow::key);
        return row == rows.end() ? m_reader.m_walk.check() : readRow(static_cast<std::size_t>(row - rows.begin()));
    }

    /// The error of the first row that has one.
    Error firstError() {
        const std::uint64_t missing = m_table.required & ~m_seen;
        if (missing == 0 && m_errors.empty()) {
            return nullptr;
        }
        const auto missingRow = static_cast<std::size_t>(std::countr_zero(missing));
        const auto first = std::ranges::min_element(m_errors, {}, &std::pair<std::size_t, Error>::first);
        if (first != m_errors.end() && first->first < missingRow) {
            return std::move(first->second);
        }
        return std::make_unique<DecodingError>(Kind::keyNotFound, "", std::string(m_table.rows[missingRow].key));
    }

private:
    bool readRow(std::size_t index) {
        const FieldRow& row = m_table.rows[index];
        m_next = index + 1;
        if ((m_seen & RecordTable::bit(index)) != 0) {
            // Of duplicate keys the last one counts: forget all that came of the earlier one.
            row.reset(m_record);
            std::erase_if(m_errors, [index](const auto& error) { return error.first == index; });
        }
        m_seen |= RecordTable::bit(index);
        const bool isNull = m_reader.isNull();
        if (isNull ? row.presence != Presence::required || m_reader.refuseNull(row.shape->typeName())
                   : row.read(m_reader, m_record)) {
            return true;
        }
        if (m_reader.m_walk.isBroken()) {
            return false;
        }
        m_errors.emplace_back(index, m_reader.takeError({std::string(row.key)}));
        return true;
    }

    ValueReader& m_reader;
    const RecordTable& m_table;
    void* m_record;
    std::size_t m_next = 0;
    std::uint64_t m_seen = 0;
    std::vector<std::pair<std::size_t, Error>> m_errors; ///< by row
};

bool ValueReader::readRecord(const RecordTable& table, void* record) {
    if (m_walk.kind() != '{') {
        return mismatch(Shape::Kind::record);
    }
    RecordRead read(*this, table, record);
    return m_walk.eachMember([&read](DocumentWalk::Key key) { return read.readMember(key); }) &&
           leave(read.firstError());
}

bool ValueReader::readList(void* list, ElementRead element) {
    if (m_walk.kind() != '[') {
        return mismatch(Shape::Kind::list);
    }
    Error first;
    std::size_t index = 0;
    const auto readElement = [&] {
        if (!element(*this, list)) {
            if (m_walk.isBroken()) {
                return false;
            }
            Error error = takeError({index});
            first = first == nullptr ? std::move(error) : std::move(first);
        }
        ++index;
        return true;
    };
    return m_walk.eachElement(readElement) && leave(std::move(first));
}

bool ValueReader::readMap(void* map, EntryRead entry) {
    if (m_walk.kind() != '{') {
        return mismatch(Shape::Kind::map);
    }
    std::map<std::string, Error> errors;
    const auto readEntry = [&](DocumentWalk::Key key) {
        const auto name = m_walk.name(key);
        if (!name) {
            return false;
        }
        std::string ownName(*name);
        const bool success = entry(*this, map, ownName);
        if (m_walk.isBroken()) {
            return false;
        }
        if (success) {
            errors.erase(ownName);
        } else {
            Error error = takeError({ownName});
            errors.insert_or_assign(std::move(ownName), std::move(error));
        }
        return true;
    };
    return m_walk.eachMember(readEntry) && leave(errors.empty() ? nullptr : std::move(errors.begin()->second));
}

} // namespace menubar
