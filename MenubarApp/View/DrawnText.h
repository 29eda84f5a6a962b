#pragma once

#include "MenubarApp/View/View.h"

#include <cstddef>

namespace menubar {

/// The longest text that is drawn, in bytes. What is longer ends in "…" there.
inline constexpr std::size_t drawnTextLimit = 20'000;

/// Makes every text of the tree safe to draw: control characters are replaced, the excessively long is cut. The text
/// that a field edits stays as it is.
void makeDrawable(View& view);

} // namespace menubar
