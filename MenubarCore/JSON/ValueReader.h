#pragma once

#include "MenubarCore/JSON/DecodingError.h"
#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/JSON/RecordTable.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace simdjson::dom {
class element; // NOLINT(readability-identifier-naming): the parser's name
}

namespace menubar {

class ParsedDocument;

/// Reads the values of one document into members. It is always at one value, the current one.
///
/// A read that returns false has left the document's error behind, and nothing is read after it. So that the same
/// error is found whatever the order of keys, parts are read in an order of our own: the elements of a list by
/// position, the entries of a map by key, the members of a record by row.
class ValueReader {
public:
    using DocumentRead = bool (*)(ValueReader& reader, void* target);
    using ElementRead = bool (*)(ValueReader& reader, void* list, std::size_t count);
    using EntryRead = bool (*)(ValueReader& reader, void* map, std::string_view key);

    /// Reads a document's one value by `read`. The error of a document that is not JSON, else the one that `read` left.
    [[nodiscard]] static std::optional<DecodingError> readDocument(std::string_view document, void* target,
                                                                   DocumentRead read);

    ValueReader(const ValueReader&) = delete;
    ValueReader& operator=(const ValueReader&) = delete;

    /// In bytes: what bounds the memory that may be asked for before a value is read.
    [[nodiscard]] std::size_t documentSize() const;

    /// Whether the current value is `null`.
    [[nodiscard]] bool isNull() const;

    [[nodiscard]] bool read(bool& value);
    [[nodiscard]] bool read(std::int64_t& value);
    [[nodiscard]] bool read(double& value);
    [[nodiscard]] bool read(std::string& value);
    [[nodiscard]] bool read(JSONValue& value);

    /// A text without a copy; valid until the document is read.
    [[nodiscard]] std::optional<std::string_view> readText();

    /// Reads an object into the fresh record of `table`.
    [[nodiscard]] bool readRecord(const RecordTable& table, void* record);

    /// Reads an array of about `count` elements; `element` adds the current one to `list`.
    [[nodiscard]] bool readList(void* list, ElementRead element);

    /// Reads an object; `entry` adds the current value to `map`, in ascending order of the keys.
    [[nodiscard]] bool readMap(void* map, EntryRead entry);

    /// Leaves an error about the current value: a text without the form it must have. False.
    bool refuse(std::string description);

    /// Leaves an error about the current value: a `null` where a value is required. False.
    bool refuseNull(std::string_view typeName);

private:
    explicit ValueReader(const ParsedDocument& document);

    /// Adds a step to the path of the error that the read of a part has left. False.
    bool failAt(CodingKey step);
    bool mismatch(Shape::Kind expected);
    bool readMember(const FieldRow& row, void* record);

    const ParsedDocument* m_document;
    const simdjson::dom::element* m_value;
    DecodingError m_error; ///< its path has the root last, until the document is read
};

} // namespace menubar
