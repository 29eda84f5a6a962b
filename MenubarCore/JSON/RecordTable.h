#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace menubar {

class ValueReader;
struct RecordTable;

/// What happens when a key is missing or its value is `null`.
enum class Presence {
    required,    ///< the document fails
    optional,    ///< the member is absent
    withDefault, ///< the member keeps the value that it has in a fresh record
};

/// What a value looks like in JSON: enough to read it, to generate it and to describe it.
struct Shape {
    enum class Kind {
        boolean,
        integer, ///< a whole number of 64 bits
        number,  ///< a double
        text,
        formattedText, ///< a text with a form of its own, such as a timestamp
        enumeration,   ///< one of `texts`; every other text means the last of them
        record,        ///< an object with the keys of `record`
        list,          ///< an array of `element`
        map,           ///< an object with any keys and values of `element`
        any,
    };

    Kind kind = Kind::any;
    std::span<const std::string_view> texts{}; ///< enumeration
    const RecordTable* record = nullptr;       ///< record
    const Shape* element = nullptr;            ///< list, map

    /// The name of the JSON type in error texts, such as "Int" or "Array<Any>".
    [[nodiscard]] constexpr std::string_view typeName() const {
        switch (kind) {
        case Kind::boolean: return "Bool";
        case Kind::integer: return "Int";
        case Kind::number: return "Double";
        case Kind::text:
        case Kind::formattedText:
        case Kind::enumeration: return "String";
        case Kind::record:
        case Kind::map: return "Dictionary<String, Any>";
        case Kind::list: return "Array<Any>";
        case Kind::any: return "Any";
        }
        return {};
    }
};

/// One member of a record. The functions take the record that the table is for.
struct FieldRow {
    std::string_view key;
    Presence presence = Presence::required;
    const Shape* shape = nullptr;
    bool (*read)(ValueReader& reader, void* record) = nullptr; ///< reads a value that is not `null` into the member
};

/// A record's wire format, one row for each member. Decoding, tests and fuzzing all go by it.
struct RecordTable {
    /// Sets of rows are kept in one word.
    static constexpr std::size_t maximumRows = 64;

    /// Whether the keys differ.
    [[nodiscard]] static constexpr bool areSound(std::span<const FieldRow> rows) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                if (rows[i].key == rows[j].key) {
                    return false;
                }
            }
        }
        return rows.size() <= maximumRows;
    }

    std::span<const FieldRow> rows;
};

} // namespace menubar
