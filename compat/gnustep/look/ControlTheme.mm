#import "compat/gnustep/look/Controls.h"

#include "compat/gnustep/look/Drawing.h"

#include <algorithm>
#include <cmath>

namespace {

namespace Drawing = menubar::Drawing;
namespace Palette = menubar::Palette;

constexpr float titleBarHeight = 28.0F;
constexpr CGFloat titleMargin = 40.0; // for the buttons, on each side

} // namespace

@interface KnobCell : NSCell
@end

@implementation KnobCell

- (void)drawWithFrame:(NSRect)frame inView:(NSView*)view {
    const NSRect knob = NSInsetRect(frame, 3.0, 3.0);
    const CGFloat radius = std::min(NSWidth(knob), NSHeight(knob)) / 2;
    [Palette::scroller() setFill];
    [[NSBezierPath bezierPathWithRoundedRect:knob xRadius:radius yRadius:radius] fill];
}

@end

@implementation ControlTheme

- (void)drawButton:(NSRect)frame in:(NSCell*)cell view:(NSView*)view style:(int)style state:(GSThemeControlState)state {
    const bool isPressed = state == GSThemeHighlightedState || state == GSThemeHighlightedFirstResponderState;
    const bool isDisabled = state == GSThemeDisabledState || ![cell isEnabled];
    NSColor* fill = isPressed                        ? Palette::pressed()
                    : isDisabled                     ? Palette::disabledControl()
                    : Drawing::isDefaultButton(cell) ? Palette::highlight()
                                                     : Palette::control();
    const bool isFocused = [cell showsFirstResponder] && Drawing::focusOf(view) == Drawing::Focus::present;
    Drawing::drawBezel(frame, fill, isDisabled ? Palette::separator() : Palette::border(),
                       isFocused ? Drawing::Focus::present : Drawing::Focus::absent, Palette::controlRadius);
}

- (GSThemeMargins)buttonMarginsForCell:(NSCell*)cell style:(int)style state:(GSThemeControlState)state {
    return {.left = 8.0, .right = 8.0, .top = 2.0, .bottom = 2.0};
}

/// What has a bezel shows the focus there.
- (void)drawFocusFrame:(NSRect)frame view:(NSView*)view {
    if (![view isKindOfClass:[NSButton class]] || ![static_cast<NSButton*>(view) isBordered]) {
        Drawing::drawBezel([view bounds], nil, nil, Drawing::Focus::present, Palette::controlRadius);
    }
}

- (void)drawScrollViewRect:(NSRect)rect inView:(NSView*)view {
    auto* scrollView = static_cast<NSScrollView*>(view);
    if ([scrollView borderType] != NSNoBorder) {
        Drawing::drawBezel([view bounds], Palette::control(), Palette::border(),
                           Drawing::focusOf([scrollView documentView]), Palette::controlRadius);
    }
}

- (NSSize)sizeForBorderType:(NSBorderType)type {
    return type == NSNoBorder ? NSZeroSize : NSMakeSize(2.0, 2.0);
}

// Scrollers

- (float)defaultScrollerWidth {
    return 12.0F;
}

- (BOOL)scrollViewUseBottomCorner {
    return NO;
}

- (NSCell*)cellForScrollerKnob:(BOOL)isHorizontal {
    static KnobCell* const cell = [[KnobCell alloc] init]; // its users do not own it
    return cell;
}

- (NSCell*)cellForScrollerKnobSlot:(BOOL)isHorizontal {
    static NSCell* const cell = [[NSCell alloc] initTextCell:@""];
    return cell;
}

// Steppers

- (void)drawStepperCell:(NSCell*)cell
              withFrame:(NSRect)frame
                 inView:(NSView*)view
            highlightUp:(BOOL)isUpPressed
          highlightDown:(BOOL)isDownPressed {
    auto* stepper = static_cast<NSStepperCell*>(cell);
    Drawing::drawControl(frame, cell, Drawing::focusOf(view));
    const CGFloat upwards = [view isFlipped] ? -1.0 : 1.0;
    [self drawArrowIn:[self stepperUpButtonRectWithFrame:frame]
            direction:upwards
            isPressed:isUpPressed
            isEnabled:[cell isEnabled] && [stepper doubleValue] < [stepper maxValue]];
    [self drawArrowIn:[self stepperDownButtonRectWithFrame:frame]
            direction:-upwards
            isPressed:isDownPressed
            isEnabled:[cell isEnabled] && [stepper doubleValue] > [stepper minValue]];
}

- (void)drawArrowIn:(NSRect)half direction:(CGFloat)direction isPressed:(BOOL)isPressed isEnabled:(BOOL)isEnabled {
    if (isPressed) {
        [Palette::pressed() setFill];
        [[NSBezierPath bezierPathWithRoundedRect:NSInsetRect(half, 2.0, 2.0) xRadius:3.0 yRadius:3.0] fill];
    }
    Drawing::drawArrow(NSMakePoint(NSMidX(half), NSMidY(half)), direction,
                       isEnabled ? Palette::text() : Palette::border());
}

- (NSRect)stepperUpButtonRectWithFrame:(NSRect)frame {
    return NSMakeRect(NSMinX(frame), NSMidY(frame), NSWidth(frame), NSHeight(frame) / 2);
}

- (NSRect)stepperDownButtonRectWithFrame:(NSRect)frame {
    return NSMakeRect(NSMinX(frame), NSMinY(frame), NSWidth(frame), NSHeight(frame) / 2);
}

/// A part of a circle, which turns.
- (void)drawProgressIndicator:(NSProgressIndicator*)progress
                   withBounds:(NSRect)bounds
                     withClip:(NSRect)clip
                      atCount:(int)count
                     forValue:(double)value {
    NSBezierPath* arc = [NSBezierPath bezierPath];
    [arc appendBezierPathWithArcWithCenter:NSMakePoint(NSMidX(bounds), NSMidY(bounds))
                                    radius:NSWidth(bounds) / 2 - 4.0
                                startAngle:30.0 * count
                                  endAngle:30.0 * count + 270.0];
    [arc setLineWidth:3.0];
    [Palette::scroller() setStroke];
    [arc stroke];
}

// The frame of a window that no window manager decorates

- (float)titlebarHeight {
    return titleBarHeight;
}

- (float)resizebarHeight {
    return 6.0F;
}

/// The main menu is there for its keys; it takes no room in a window.
- (void)setMenu:(NSMenu*)menu forWindow:(NSWindow*)window {
}

- (void)updateAllWindowsWithMenu:(NSMenu*)menu {
}

- (NSButton*)standardWindowButton:(NSWindowButton)kind forStyleMask:(NSUInteger)mask {
    const bool isClose = kind == NSWindowCloseButton;
    NSButton* button = [[[NSButton alloc] init] autorelease];
    [button setTitle:isClose ? @"✕" : @"–"];
    [button setBordered:NO];
    [button setRefusesFirstResponder:YES];
    [button setAction:isClose ? @selector(performClose:) : @selector(performMiniaturize:)];
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
    NSRect bar = NSMakeRect(0, NSHeight(frame) - titleBarHeight, NSWidth(frame), titleBarHeight);
    [Palette::titleBar() setFill];
    NSRectFill(bar);
    [Palette::border() setFill];
    NSRectFill(NSMakeRect(0, NSMinY(bar), NSWidth(bar), 1));
    NSFrameRect(NSMakeRect(0, 0, NSWidth(frame), NSHeight(frame)));
    NSFont* font = [NSFont boldSystemFontOfSize:[NSFont systemFontSize]];
    const CGFloat width = std::ceil(Drawing::lineWidth(title, font));
    bar = NSInsetRect(bar, std::max(titleMargin, std::floor((NSWidth(bar) - width) / 2)), 0);
    Drawing::drawLine(title, bar, font, state == GSTitleBarKey ? Palette::text() : Palette::disabledText());
}

@end
