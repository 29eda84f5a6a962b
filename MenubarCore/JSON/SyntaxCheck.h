#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace menubar {

/// Finds the first place where a document stops being JSON, reading strictly from the first byte. It is what puts a
/// place and an expectation into the error texts; it is not fast, and only documents that the parser refused are worth
/// its time. Of those that are JSON all the same it finds nothing.
/// Constant stack, whatever the nesting. Pure; any thread.
namespace SyntaxCheck {

struct Fault {
    std::string problem;    ///< what was expected or found, for example `expected "," or "}"`
    std::size_t offset = 0; ///< in bytes; the document's size when it ends too early
    std::size_t line = 1;   ///< from 1, ended by line feeds
    std::size_t column = 1; ///< from 1, in code points
    bool atEnd = false;     ///< the document ends there

    /// One line: the problem and its place.
    [[nodiscard]] std::string text() const;
};

/// The first fault, or nothing for a document that is JSON, holds no number beyond double's range and nests no more
/// than `maximumDepth` containers.
[[nodiscard]] std::optional<Fault> firstFault(std::string_view document, std::size_t maximumDepth);

/// `document`, which is JSON, for a parser that has no type for an integer of more than 64 bits: each of them has an
/// exponent of zero, so that it is a double. None of the doubles that were there before is -2^63, which some of those
/// integers become: that one is written as the integer that it is.
[[nodiscard]] std::string withWideIntegersAsDoubles(std::string_view document);

} // namespace SyntaxCheck

} // namespace menubar
