#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace menubar {

/// One step of a coding path: an object's key or an array's zero-based position.
struct CodingKey {
    std::variant<std::string, std::size_t> step;

    /// The key's name, or "Index " and the position.
    [[nodiscard]] std::string name() const;

    bool operator==(const CodingKey&) const = default;
};

/// The steps from the document's root to a value, root first.
using CodingPath = std::vector<CodingKey>;

/// The names of the steps joined with "."; empty at the root.
[[nodiscard]] std::string describe(const CodingPath& path);

/// Why a document did not decode.
struct DecodingError {
    enum class Kind {
        typeMismatch, ///< a value of another JSON type than `expected`, or an integer that is not whole or out of range
        valueNotFound, ///< a `null` where a value of type `expected` is required
        keyNotFound,   ///< an object lacks the required key `key`
        dataCorrupted, ///< not JSON, or a text that does not have the form it must have; `description` says which
    };

    Kind kind = Kind::dataCorrupted;
    /// typeMismatch, valueNotFound: "Int", "Double", "String", "Bool", "Dictionary<String, Any>" or "Array<Any>".
    std::string expected{};
    std::string key{};         ///< keyNotFound: the key's name
    std::string description{}; ///< dataCorrupted: one line
    CodingPath path{};         ///< to the failing value; empty for syntax errors

    bool operator==(const DecodingError&) const = default;
};

/// One line for people: "type mismatch (T) at P", "missing value (T) at P", "missing key K", or the description.
[[nodiscard]] std::string describe(const DecodingError& error);

} // namespace menubar
