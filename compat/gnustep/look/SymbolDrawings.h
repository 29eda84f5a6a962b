#pragma once

#import <AppKit/AppKit.h>

#include <string_view>

namespace menubar {

/// The drawings stand in a square of this side, its origin at the lower left.
constexpr CGFloat symbolSide = 18.0;

/// Draws in the colour that is set.
using SymbolDrawing = void (*)();

/// The app's drawing for a system symbol; null for a name that has none. Main thread.
[[nodiscard]] SymbolDrawing symbolDrawing(std::string_view name);

} // namespace menubar
