#pragma once

#include "MenubarCore/JSON/DecodingError.h"
#include "MenubarCore/JSON/Record.h"

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
/// A syntax error's text is one line: what was expected or found, with line and column (from 1, in characters).
namespace JSONReader {

/// Containers inside one another, the outermost counted.
inline constexpr int maximumDepth = 1000;

/// Decodes a document whose top level is the record `T` (see Record.h) into a fresh `T`.
template <typename T>
[[nodiscard]] std::expected<T, DecodingError> decode(std::string_view document);

} // namespace JSONReader

} // namespace menubar
