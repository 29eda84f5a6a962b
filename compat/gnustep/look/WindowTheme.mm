#import "compat/gnustep/look/ControlTheme.h"

#import <GNUstepGUI/GSWindowDecorationView.h>

#include "compat/gnustep/look/Drawing.h"
#include "compat/gnustep/look/Palette.h"

#include <cmath>

namespace {

namespace Drawing = menubar::Drawing;
namespace Palette = menubar::Palette;

constexpr float titleBarHeight = 28.0F;
constexpr float resizeBarHeight = 6.0F;
constexpr float buttonSide = 16.0F;
constexpr float buttonPadding = 8.0F;
constexpr CGFloat titleMargin = 40.0; // for the buttons, on each side
constexpr CGFloat titleFontSize = 13.0;

} // namespace

/// A sign in the title bar, on a round ground while it is pressed.
@interface TitleBarButton : NSButton {
    NSWindowButton _kind;
}
- (instancetype)initWithKind:(NSWindowButton)kind;
@end

@implementation TitleBarButton

- (instancetype)initWithKind:(NSWindowButton)kind {
    self = [super initWithFrame:NSMakeRect(0, 0, buttonSide, buttonSide)];
    if (self != nil) {
        _kind = kind;
        [self setRefusesFirstResponder:YES];
    }
    return self;
}

- (void)drawRect:(NSRect)dirty {
    const NSRect bounds = [self bounds];
    [Palette::titleBar() setFill];
    NSRectFill(bounds);
    if ([[self cell] isHighlighted]) {
        [Palette::border() setFill];
        [[NSBezierPath bezierPathWithOvalInRect:bounds] fill];
    }
    constexpr CGFloat arm = 4.0;
    const CGFloat x = NSMidX(bounds);
    const CGFloat y = NSMidY(bounds);
    if (_kind == NSWindowCloseButton) {
        const NSPoint falling[] = {{x - arm, y - arm}, {x + arm, y + arm}};
        const NSPoint rising[] = {{x - arm, y + arm}, {x + arm, y - arm}};
        Drawing::strokeLines(falling, 2, 1.5, Palette::text());
        Drawing::strokeLines(rising, 2, 1.5, Palette::text());
    } else {
        const NSPoint level[] = {{x - arm, y}, {x + arm, y}};
        Drawing::strokeLines(level, 2, 1.5, Palette::text());
    }
}

@end

/// The frame of a window that no window manager decorates.
@implementation ControlTheme (Window)

- (float)titlebarHeight {
    return titleBarHeight;
}

- (float)resizebarHeight {
    return resizeBarHeight;
}

- (float)titlebarButtonSize {
    return buttonSide;
}

- (float)titlebarPaddingTop {
    return (titleBarHeight - buttonSide) / 2;
}

- (float)titlebarPaddingLeft {
    return buttonPadding;
}

- (float)titlebarPaddingRight {
    return buttonPadding;
}

/// The main menu is there for its keys; it takes no room in a window.
- (void)setMenu:(NSMenu*)menu forWindow:(NSWindow*)window {
}

- (void)updateAllWindowsWithMenu:(NSMenu*)menu {
}

- (NSButton*)standardWindowButton:(NSWindowButton)kind forStyleMask:(NSUInteger)mask {
    NSButton* button = [[[TitleBarButton alloc] initWithKind:kind] autorelease];
    [button setAction:kind == NSWindowCloseButton ? @selector(performClose:) : @selector(performMiniaturize:)];
    return button;
}

- (void)drawWindowBorder:(NSRect)dirty
               withFrame:(NSRect)frame
            forStyleMask:(unsigned int)style
                   state:(int)state
                andTitle:(NSString*)title {
    [Palette::window() setFill];
    NSRectFill(dirty);
    if ((style & NSWindowStyleMaskTitled) == 0) {
        return;
    }
    const NSRect bar = NSMakeRect(0, NSHeight(frame) - titleBarHeight, NSWidth(frame), titleBarHeight);
    [Palette::titleBar() setFill];
    NSRectFill(bar);
    [Palette::border() setFill];
    NSRectFill(NSMakeRect(0, NSMinY(bar), NSWidth(bar), 1));
    NSFont* font = [NSFont boldSystemFontOfSize:titleFontSize];
    const bool isKey = state == GSTitleBarKey;
    const CGFloat room = std::max(0.0, NSWidth(bar) - 2 * titleMargin);
    const CGFloat width = std::min(room, std::ceil(Drawing::lineWidth(title, font)));
    Drawing::drawLine(title, NSMakeRect(std::floor(NSMidX(bar) - width / 2), NSMinY(bar), width, NSHeight(bar)), font,
                      isKey ? Palette::text() : Palette::disabledText());
    [Palette::border() setFill];
    NSFrameRect(NSMakeRect(0, 0, NSWidth(frame), NSHeight(frame)));
}

@end
