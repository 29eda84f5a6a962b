#pragma once

#import <AppKit/AppKit.h>

namespace menubar {

/// The colours and measures of a light desktop, in points.
namespace Palette {

inline NSColor* rgb(int red, int green, int blue) {
    return [NSColor colorWithCalibratedRed:red / 255.0 green:green / 255.0 blue:blue / 255.0 alpha:1.0];
}

inline NSColor* surface() {
    return rgb(0xf6, 0xf6, 0xf7);
}
inline NSColor* border() {
    return rgb(0xc4, 0xc4, 0xc8);
}
inline NSColor* separator() {
    return rgb(0xdc, 0xdc, 0xe0);
}
inline NSColor* pressed() {
    return rgb(0xdf, 0xe0, 0xe4);
}
inline NSColor* highlight() {
    return rgb(0x2a, 0x6f, 0xe8);
}
inline NSColor* text() {
    return rgb(0x1d, 0x1d, 0x1f);
}
inline NSColor* disabledText() {
    return rgb(0x86, 0x86, 0x8b);
}
inline NSColor* highlightedText() {
    return [NSColor whiteColor];
}
inline NSColor* symbol() {
    return rgb(0x5a, 0x5a, 0x60);
}
inline NSColor* window() {
    return rgb(0xf0, 0xf0, 0xf2);
}
inline NSColor* titleBar() {
    return rgb(0xe6, 0xe6, 0xe9);
}
inline NSColor* control() {
    return [NSColor whiteColor];
}
inline NSColor* disabledControl() {
    return rgb(0xf2, 0xf2, 0xf4);
}
inline NSColor* offSwitch() {
    return rgb(0xbd, 0xbd, 0xc3);
}
inline NSColor* placeholder() {
    return rgb(0x9a, 0x9a, 0xa0);
}
inline NSColor* scroller() {
    return rgb(0xb4, 0xb4, 0xba);
}
inline NSColor* hintSurface() {
    return rgb(0xff, 0xfd, 0xf0);
}

constexpr CGFloat controlRadius = 5.0;
constexpr int menuRadius = 7;
constexpr int stripRadius = 6;
constexpr CGFloat menuFontSize = 13.0;
constexpr CGFloat hintFontSize = 11.0;

} // namespace Palette

} // namespace menubar
