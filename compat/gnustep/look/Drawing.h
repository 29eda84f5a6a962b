#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/ObjCPointer.h"

namespace menubar {

/// The colours and measures of a light desktop, in points.
namespace Palette {

struct Color {
    int rgb;

    NSColor* operator()() const {
        return [NSColor colorWithCalibratedRed:(rgb >> 16) / 255.0
                                         green:(rgb >> 8 & 0xff) / 255.0
                                          blue:(rgb & 0xff) / 255.0
                                         alpha:1.0];
    }
};

constexpr Color surface{0xf6f6f7};
constexpr Color border{0xc4c4c8};
constexpr Color separator{0xdcdce0};
constexpr Color pressed{0xdfe0e4};
constexpr Color highlight{0x2a6fe8};
constexpr Color text{0x1d1d1f};
constexpr Color disabledText{0x86868b};
constexpr Color highlightedText{0xffffff};
constexpr Color symbol{0x5a5a60};
constexpr Color window{0xf0f0f2};
constexpr Color titleBar{0xe6e6e9};
constexpr Color control{0xffffff};
constexpr Color disabledControl{0xf2f2f4};
constexpr Color offSwitch{0xbdbdc3};
constexpr Color placeholder{0x9a9aa0};
constexpr Color scroller{0xb4b4ba};
constexpr Color hintSurface{0xfffdf0};

constexpr CGFloat controlRadius = 5.0;

} // namespace Palette

/// What the drawn controls have in common. Main thread.
namespace Drawing {

enum class Focus { absent, present };

/// A shape with round corners, filled unless that is nil, and a hairline around it, which is strong and coloured where
/// the focus is.
void drawBezel(NSRect frame, NSColor* fill, NSColor* line, Focus focus, CGFloat radius);

/// The bezel of a field, a picker or a stepper.
void drawControl(NSRect frame, NSCell* cell, Focus focus);

/// Lines from each point to the next, with round ends.
void strokeLines(const NSPoint* points, int count, CGFloat width, NSColor* color);
/// It points along the y axis for a direction of 1, against it for -1.
void drawArrow(NSPoint middle, CGFloat direction, NSColor* color);

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
