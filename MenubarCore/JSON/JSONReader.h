#pragma once

#include "MenubarCore/JSON/DecodingError.h"
#include "MenubarCore/JSON/Record.h"

#include <cstddef>
#include <expected>
#include <string_view>

namespace menubar {

/// The strict reader of JSON documents.
///
/// It refuses what RFC 8259 does not allow (a byte-order mark, ill-formed UTF-8, lone surrogate escapes, raw control
/// characters, trailing commas or bytes, leading zeros, an empty document), a number beyond double's range wherever it
/// stands, and more than `maximumDepth` nested containers. It looks at every byte: a malformed value under a key that
/// nobody reads fails the document too. Of duplicate keys the last wins, and only that one is checked for its type.
///
/// A syntax error's text is one line: what was expected or found, with line and column (from 1, in characters); it
/// comes before any error of type or presence. Of those, the one reported is the first by position in a list, by key
/// in a map and by row in a record.
///
/// An integer of more than 64 bits is read as a double; "-0" is an integer and has no sign.
///
/// In time and memory that grow with the document's size, on a small stack. Any thread.
namespace JSONReader {

/// Containers inside one another, the outermost counted.
inline constexpr std::size_t maximumDepth = 1000;

/// Decodes a document whose one value is a `T`, which may be anything that Record.h can read.
template <typename T>
[[nodiscard]] std::expected<T, DecodingError> decode(std::string_view document) {
    std::expected<T, DecodingError> result;
    auto error = ValueReader::readDocument(document, &*result, [](ValueReader& reader, void* target) {
        return readElement(reader, *static_cast<T*>(target));
    });
    if (error) {
        result = std::unexpected(std::move(*error));
    }
    return result;
}

} // namespace JSONReader

} // namespace menubar
