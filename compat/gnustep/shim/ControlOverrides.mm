// What GNUstep's controls do wrong or not at all. Each category replaces methods of GNUstep's own class.
#import "compat/gnustep/desktop/MenuPanel.h"

#include "compat/gnustep/look/Drawing.h"

#include <algorithm>

namespace {

namespace Drawing = menubar::Drawing;
namespace Palette = menubar::Palette;

unichar keyOf(NSEvent* event) {
    NSString* characters = [event charactersIgnoringModifiers];
    return [characters length] > 0 ? [characters characterAtIndex:0] : 0;
}

} // namespace

@interface NSCell (Private)
- (void)_drawAttributedText:(NSAttributedString*)text inFrame:(NSRect)frame;
@end

/// GNUstep's button lets a title that does not fit run out of sight.
@implementation NSButtonCell (MenubarOverride)

- (NSRect)drawTitle:(NSAttributedString*)title withFrame:(NSRect)frame inView:(NSView*)view {
    const auto styled = [title](NSString* text) {
        NSDictionary* look = [title length] > 0 ? [title attributesAtIndex:0 effectiveRange:nullptr] : @{};
        return [[[NSMutableAttributedString alloc] initWithString:text attributes:look] autorelease];
    };
    NSMutableAttributedString* shown = styled(Drawing::shortened(
        [title string], [&](NSString* part) { return [styled(part) size].width <= NSWidth(frame) + 0.5; }));
    if (Drawing::isDefaultButton(self) && [self isEnabled] && ![self isHighlighted]) {
        [shown addAttribute:NSForegroundColorAttributeName
                      value:Palette::highlightedText()
                      range:NSMakeRange(0, [shown length])];
    }
    [self _drawAttributedText:shown inFrame:frame];
    return frame;
}

@end

/// Controls draw the focus themselves.
@implementation NSControl (MenubarOverride)

- (BOOL)becomeFirstResponder {
    [self setNeedsDisplay:YES];
    return YES;
}

- (BOOL)resignFirstResponder {
    [self setNeedsDisplay:YES];
    return YES;
}

@end

/// GNUstep's switch answers neither the mouse nor the keyboard.
@implementation NSSwitch (MenubarOverride)

- (NSSize)intrinsicContentSize {
    return NSMakeSize(38.0, 24.0);
}

/// The focus is drawn around it.
- (NSRect)frameForAlignmentRect:(NSRect)rect {
    return NSInsetRect(rect, -3.0, 0.0);
}

- (void)performClick:(id)sender {
    if ([self isEnabled]) {
        [self setState:[self state] == NSControlStateValueOn ? static_cast<NSControlStateValue>(NSControlStateValueOff)
                                                             : static_cast<NSControlStateValue>(NSControlStateValueOn)];
        [self setNeedsDisplay:YES];
        [self sendAction:[self action] to:[self target]];
    }
}

- (void)mouseDown:(NSEvent*)event {
    [self performClick:self];
}

- (void)keyDown:(NSEvent*)event {
    if (keyOf(event) == ' ') {
        [self performClick:self];
    } else {
        [super keyDown:event];
    }
}

- (BOOL)acceptsFirstResponder {
    return [self isEnabled];
}

- (void)drawRect:(NSRect)dirty {
    const bool isOn = [self state] == NSControlStateValueOn;
    const NSRect track = NSInsetRect([self bounds], 3.0, 2.0);
    const CGFloat radius = NSHeight(track) / 2;
    NSColor* fill = isOn ? Palette::highlight() : Palette::offSwitch();
    [([self isEnabled] ? fill : [fill colorWithAlphaComponent:0.45]) setFill];
    [[NSBezierPath bezierPathWithRoundedRect:track xRadius:radius yRadius:radius] fill];
    const CGFloat side = NSHeight(track) - 3.0;
    const CGFloat x = isOn ? NSMaxX(track) - side - 1.5 : NSMinX(track) + 1.5;
    [[NSColor whiteColor] setFill];
    [[NSBezierPath bezierPathWithOvalInRect:NSMakeRect(x, NSMinY(track) + 1.5, side, side)] fill];
    if (Drawing::focusOf(self) == Drawing::Focus::present) {
        Drawing::drawBezel([self bounds], nil, nil, Drawing::Focus::present, NSHeight([self bounds]) / 2);
    }
}

@end

/// GNUstep's pop-up menu has no scrolling, and a quick click picks what is shown again.
@implementation NSPopUpButton (MenubarOverride)

- (NSSize)intrinsicContentSize {
    return [[self cell] cellSize];
}

- (void)popUpPressedBy:(NSEvent*)press {
    if (![self isEnabled] || [self numberOfItems] == 0) {
        return;
    }
    [[self retain] autorelease];
    const auto panel = menubar::ObjCPointer<MenuPanel>::adopt([[MenuPanel alloc] initWithMenu:[self menu]]);
    const NSRect strip = [[self window] convertRectToScreen:[self convertRect:[self bounds] toView:nil]];
    NSMenuItem* chosen = [panel.get() trackBelow:strip from:[self indexOfSelectedItem] pressedBy:press];
    if (chosen != nil) {
        [self selectItem:chosen];
        [self setNeedsDisplay:YES];
        [self sendAction:[self action] to:[self target]];
    }
}

- (void)mouseDown:(NSEvent*)event {
    [self popUpPressedBy:event];
}

- (void)performClick:(id)sender {
    [self popUpPressedBy:nil];
}

- (void)keyDown:(NSEvent*)event {
    const unichar key = keyOf(event);
    if (key == ' ' || key == NSUpArrowFunctionKey || key == NSDownArrowFunctionKey) {
        [self popUpPressedBy:nil];
    } else {
        [super keyDown:event];
    }
}

@end

/// GNUstep's stepper does not answer the keyboard.
@implementation NSStepper (MenubarOverride)

- (NSSize)intrinsicContentSize {
    return NSMakeSize(18.0, 24.0);
}

- (BOOL)acceptsFirstResponder {
    return [self isEnabled];
}

- (void)keyDown:(NSEvent*)event {
    const unichar key = keyOf(event);
    if (key != NSUpArrowFunctionKey && key != NSDownArrowFunctionKey) {
        [super keyDown:event];
        return;
    }
    const double step = key == NSUpArrowFunctionKey ? [self increment] : -[self increment];
    const double value = std::clamp([self doubleValue] + step, [self minValue], [self maxValue]);
    if (value != [self doubleValue]) {
        [self setDoubleValue:value];
        [self sendAction:[self action] to:[self target]];
    }
}

@end

/// GNUstep types a key that was meant as a command and found no taker.
@implementation NSTextView (MenubarOverride)

- (void)keyDown:(NSEvent*)event {
    if (![self isEditable] || ([event modifierFlags] & NSEventModifierFlagCommand) != 0) {
        [super keyDown:event];
    } else {
        [self interpretKeyEvents:@[ event ]];
    }
}

/// Every change of a selection would go to the pasteboard server, which is started for it, for the middle mouse button
/// to paste. Copying reaches it as before.
- (void)copySelection {
}

- (void)breakUndoCoalescing {
}

@end
