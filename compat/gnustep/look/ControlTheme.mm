#import "compat/gnustep/look/ControlTheme.h"

#include "compat/gnustep/look/Drawing.h"
#include "compat/gnustep/look/Palette.h"

#include <algorithm>
#include <cmath>

namespace {

namespace Drawing = menubar::Drawing;
namespace Palette = menubar::Palette;

constexpr float scrollerWidth = 12.0F;

/// The knob of a scroller, or what it slides in, which is not drawn.
enum class ScrollerPart { knob, slot };

} // namespace

@interface ScrollerCell : NSCell {
    ScrollerPart _part;
}
- (instancetype)initWithPart:(ScrollerPart)part;
@end

@implementation ScrollerCell

- (instancetype)initWithPart:(ScrollerPart)part {
    self = [super initTextCell:@""];
    if (self != nil) {
        _part = part;
    }
    return self;
}

- (void)drawWithFrame:(NSRect)frame inView:(NSView*)view {
    if (_part == ScrollerPart::slot) {
        return;
    }
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
    NSColor* fill = isPressed ? Palette::pressed() : isDisabled ? Palette::disabledControl() : Palette::control();
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
        Drawing::drawFocusRing([view bounds], Palette::controlRadius);
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
    return scrollerWidth;
}

- (BOOL)scrollViewUseBottomCorner {
    return NO;
}

- (NSCell*)cellForScrollerKnob:(BOOL)isHorizontal {
    static ScrollerCell* const cell = [[ScrollerCell alloc] initWithPart:ScrollerPart::knob];
    return cell;
}

- (NSCell*)cellForScrollerKnobSlot:(BOOL)isHorizontal {
    static ScrollerCell* const cell = [[ScrollerCell alloc] initWithPart:ScrollerPart::slot];
    return cell;
}

// Steppers

- (void)drawStepperCell:(NSCell*)cell
              withFrame:(NSRect)frame
                 inView:(NSView*)view
            highlightUp:(BOOL)isUpPressed
          highlightDown:(BOOL)isDownPressed {
    auto* stepper = static_cast<NSStepperCell*>(cell);
    Drawing::drawBezel(frame, [cell isEnabled] ? Palette::control() : Palette::disabledControl(), Palette::border(),
                       Drawing::focusOf(view), Palette::controlRadius);
    const NSRect up = [self stepperUpButtonRectWithFrame:frame];
    const NSRect down = [self stepperDownButtonRectWithFrame:frame];
    const bool isFlipped = [view isFlipped];
    [self drawArrowIn:up
            direction:isFlipped ? -1.0 : 1.0
            isPressed:isUpPressed
            isEnabled:[cell isEnabled] && [stepper doubleValue] < [stepper maxValue]];
    [self drawArrowIn:down
            direction:isFlipped ? 1.0 : -1.0
            isPressed:isDownPressed
            isEnabled:[cell isEnabled] && [stepper doubleValue] > [stepper minValue]];
}

- (void)drawArrowIn:(NSRect)half direction:(CGFloat)direction isPressed:(BOOL)isPressed isEnabled:(BOOL)isEnabled {
    if (isPressed) {
        [Palette::pressed() setFill];
        [[NSBezierPath bezierPathWithRoundedRect:NSInsetRect(half, 2.0, 2.0) xRadius:3.0 yRadius:3.0] fill];
    }
    const CGFloat x = NSMidX(half);
    const CGFloat y = NSMidY(half);
    const NSPoint arrow[] = {{x - 3.0, y - 1.5 * direction}, {x, y + 1.5 * direction}, {x + 3.0, y - 1.5 * direction}};
    Drawing::strokeLines(arrow, 3, 1.5, isEnabled ? Palette::text() : Palette::border());
}

- (NSRect)stepperUpButtonRectWithFrame:(NSRect)frame {
    return NSMakeRect(NSMinX(frame), NSMidY(frame), NSWidth(frame), NSHeight(frame) / 2);
}

- (NSRect)stepperDownButtonRectWithFrame:(NSRect)frame {
    return NSMakeRect(NSMinX(frame), NSMinY(frame), NSWidth(frame), NSHeight(frame) / 2);
}

// Switches

- (void)drawSwitchInRect:(NSRect)rect forState:(NSControlStateValue)state enabled:(BOOL)isEnabled {
    const bool isOn = state == NSControlStateValueOn;
    const NSRect track = NSInsetRect(rect, 3.0, 2.0);
    const CGFloat radius = NSHeight(track) / 2;
    NSColor* fill = isOn ? Palette::highlight() : Palette::offSwitch();
    [(isEnabled ? fill : [fill colorWithAlphaComponent:0.45]) setFill];
    [[NSBezierPath bezierPathWithRoundedRect:track xRadius:radius yRadius:radius] fill];
    const CGFloat side = NSHeight(track) - 3.0;
    const CGFloat x = isOn ? NSMaxX(track) - side - 1.5 : NSMinX(track) + 1.5;
    [[NSColor whiteColor] setFill];
    [[NSBezierPath bezierPathWithOvalInRect:NSMakeRect(x, NSMinY(track) + 1.5, side, side)] fill];
}

// The wheel

- (void)drawProgressIndicator:(NSProgressIndicator*)progress
                   withBounds:(NSRect)bounds
                     withClip:(NSRect)clip
                      atCount:(int)count
                     forValue:(double)value {
    if ([progress style] != NSProgressIndicatorStyleSpinning) {
        [super drawProgressIndicator:progress withBounds:bounds withClip:clip atCount:count forValue:value];
        return;
    }
    constexpr int spokes = 12;
    const NSPoint center = NSMakePoint(NSMidX(bounds), NSMidY(bounds));
    const CGFloat outer = std::min(NSWidth(bounds), NSHeight(bounds)) / 2 - 2.0;
    for (int spoke = 0; spoke < spokes; ++spoke) {
        const CGFloat angle = 2.0 * M_PI * spoke / spokes;
        const CGFloat x = std::sin(angle);
        const CGFloat y = -std::cos(angle);
        const int age = (count - spoke % spokes + spokes) % spokes;
        const NSPoint line[] = {{center.x + 0.5 * outer * x, center.y + 0.5 * outer * y},
                                {center.x + outer * x, center.y + outer * y}};
        Drawing::strokeLines(line, 2, 2.5, [Palette::text() colorWithAlphaComponent:0.85 - 0.06 * age]);
    }
}

@end
