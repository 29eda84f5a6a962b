#pragma once

#import <AppKit/AppKit.h>

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

} // namespace menubar
