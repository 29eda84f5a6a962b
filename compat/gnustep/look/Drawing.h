#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/ObjCPointer.h"

namespace menubar {

/// What the drawn controls have in common. Main thread.
namespace Drawing {

enum class Focus { absent, present };

/// A shape with round corners, filled unless that is nil, and a hairline around it, which is strong and coloured where
/// the focus is.
void drawBezel(NSRect frame, NSColor* fill, NSColor* line, Focus focus, CGFloat radius);

/// Around a control that has no bezel of its own.
inline void drawFocusRing(NSRect frame, CGFloat radius) {
    drawBezel(frame, nil, nil, Focus::present, radius);
}

/// Lines from each point to the next, with round ends.
void strokeLines(const NSPoint* points, int count, CGFloat width, NSColor* color);

/// One line of text in the middle of the frame's height, cut with an ellipsis where it is too wide.
void drawLine(NSString* text, NSRect frame, NSFont* font, NSColor* color);

[[nodiscard]] double lineHeight(NSFont* font);
[[nodiscard]] double lineWidth(NSString* text, NSFont* font);

/// The text, or as much of its beginning as `fits` with an ellipsis behind it.
template <class Fits>
NSString* shortened(NSString* text, const Fits& fits) {
    if (fits(text)) {
        return text;
    }
    NSUInteger fitting = 0;
    NSUInteger tooLong = [text length];
    while (fitting + 1 < tooLong) {
        const NSUInteger middle = fitting + (tooLong - fitting) / 2;
        (fits([[text substringToIndex:middle] stringByAppendingString:@"…"]) ? fitting : tooLong) = middle;
    }
    // Never between the two halves of a character.
    const NSUInteger end = [text rangeOfComposedCharacterSequenceAtIndex:fitting].location;
    return [[text substringToIndex:end] stringByAppendingString:@"…"];
}

/// Whether keys go to the view, in a window that takes them.
[[nodiscard]] Focus focusOf(NSView* view);

/// A window without a frame above others, as large as the content that it takes over.
[[nodiscard]] ObjCPointer<NSWindow> makeOverlay(Class type, NSInteger level, NSView* content);

/// Whether Return presses it.
[[nodiscard]] bool isDefaultButton(NSCell* cell);

} // namespace Drawing

} // namespace menubar
