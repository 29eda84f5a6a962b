#pragma once

#include "MenubarApp/View/Shown.h"

#include <cstddef>
#include <span>
#include <vector>

namespace menubar {

/// Sharing a stack's room among the views in it, in whole points. `which` are indices into the shares.

/// Takes `deficit` from the shares at `which`, the widest first and none below its least, so that short texts stay
/// whole beside a long one. Returns what could not be taken.
[[nodiscard]] double shrinkShares(std::vector<double>& shares, const std::vector<WidthRange>& ranges,
                                  std::span<const std::size_t> which, double deficit);

/// Adds `extra` to the shares at `which` (not none) evenly; the first ones take the remainder.
void growShares(std::vector<double>& shares, std::span<const std::size_t> which, double extra);

} // namespace menubar
