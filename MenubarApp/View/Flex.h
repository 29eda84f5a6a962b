#pragma once

#include "MenubarApp/View/Shown.h"

#include <cstddef>
#include <span>
#include <vector>

namespace menubar {

/// How the views of a stack flex to fill its room, in whole points. `which` are indices into their lengths.

/// Takes `deficit` from the lengths at `which`, the longest first and none below its least, so that short texts stay
/// whole beside a long one. Returns what could not be taken.
[[nodiscard]] double flexShrink(std::vector<double>& lengths, const std::vector<WidthRange>& ranges,
                                std::span<const std::size_t> which, double deficit);

/// Adds `extra` to the lengths at `which` (not none) evenly; the first ones take the remainder.
void flexGrow(std::vector<double>& lengths, std::span<const std::size_t> which, double extra);

} // namespace menubar
