#pragma once

#import <AppKit/AppKit.h>

namespace menubar {

enum class RoundedCorners { all, lower };

/// Cuts a borderless window's corners off, without a compositor. Holds for the window's present size. Main thread.
void roundCorners(NSWindow* window, RoundedCorners corners, int radius);

/// The outline of a view of such a window, to be stroked as its border.
[[nodiscard]] NSBezierPath* roundedOutline(NSRect bounds, RoundedCorners corners, int radius, bool isFlipped);

} // namespace menubar
