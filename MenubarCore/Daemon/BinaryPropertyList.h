#pragma once

#include <cstddef>
#include <string_view>

namespace menubar {

/// Looks a binary property list over before it is read. Its objects refer to each other by number, so that a few bytes
/// can stand for a cycle, for a tower of any height, or for a tree that doubles with every level. Any thread; no state.
namespace BinaryPropertyList {

[[nodiscard]] bool hasSignature(std::string_view bytes);

/// Whether the list is a tree of at most `maximumValues` values once every reference is followed (keys count), and all
/// that is looked at lies within the bytes. Costs no more than that many steps, and at most as deep a stack.
[[nodiscard]] bool unfoldsWithin(std::string_view bytes, std::size_t maximumValues);

} // namespace BinaryPropertyList

} // namespace menubar
