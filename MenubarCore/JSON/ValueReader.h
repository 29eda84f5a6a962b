#pragma once

#include "MenubarCore/JSON/DecodingError.h"
#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/JSON/RecordTable.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace menubar {

class DocumentWalk;

/// Reads the values of one document into members. It is always at one value, the current one, which is read once.
///
/// A read that returns false has left an error behind, which belongs to the value read. The walk goes on all the same,
/// so that the rest of the document is checked too, until a syntax error ends it. Whoever reads a container decides
/// which of the errors of its parts is the container's own.
class ValueReader {
public:
    using DocumentRead = bool (*)(ValueReader& reader, void* target);
    using ElementRead = bool (*)(ValueReader& reader, void* list);
    using EntryRead = bool (*)(ValueReader& reader, void* map, std::string_view key);

    /// Reads a document's one value by `read`. The error of a document that is not JSON, else the one that `read` left.
    [[nodiscard]] static std::optional<DecodingError> readDocument(std::string_view document, void* target,
                                                                   DocumentRead read);

    ValueReader(const ValueReader&) = delete;
    ValueReader& operator=(const ValueReader&) = delete;

    /// Whether the current value is `null`.
    [[nodiscard]] bool isNull() const;

    [[nodiscard]] bool read(bool& value);
    [[nodiscard]] bool read(std::int64_t& value);
    [[nodiscard]] bool read(double& value);
    [[nodiscard]] bool read(std::string& value);
    [[nodiscard]] bool read(JSONValue& value);

    /// A text without a copy; valid until the next read.
    [[nodiscard]] std::optional<std::string_view> readText();

    /// Reads an object into the fresh record of `table`.
    [[nodiscard]] bool readRecord(const RecordTable& table, void* record);

    /// Reads an array; `element` adds the current value to `list`.
    [[nodiscard]] bool readList(void* list, ElementRead element);

    /// Reads an object; `entry` stores the current value in `map` in place of any earlier one of that key. The key is
    /// valid until the next read.
    [[nodiscard]] bool readMap(void* map, EntryRead entry);

    /// Leaves an error about the current value: a text without the form it must have. False.
    bool refuse(std::string description);

    /// Leaves an error about the current value: a `null` where a value is required. False.
    bool refuseNull(std::string_view typeName);

private:
    class RecordRead;
    using Error = std::unique_ptr<DecodingError>;

    explicit ValueReader(DocumentWalk& walk) : m_walk(walk) {}

    /// The error that the latest read left, as an error of a part of the container being read.
    [[nodiscard]] Error takeError(CodingKey step);
    bool leave(Error error);
    bool mismatch(Shape::Kind expected);

    DocumentWalk& m_walk;
    Error m_error; ///< its path has the root last, until the document is read
};

} // namespace menubar
