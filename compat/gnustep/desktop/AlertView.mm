#import "compat/gnustep/desktop/AlertView.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarCore/Text/DisplayText.h"
#include "compat/gnustep/look/Palette.h"

#include <algorithm>
#include <cmath>
#include <utility>

using menubar::ObjCPointer;
namespace Palette = menubar::Palette;

namespace {

constexpr CGFloat widest = 440.0;
constexpr CGFloat padding = 20.0;
constexpr CGFloat textSpacing = 8.0;
constexpr CGFloat buttonHeight = 28.0;
constexpr CGFloat buttonPadding = 18.0;
constexpr CGFloat narrowestButton = 84.0;
constexpr CGFloat buttonSpacing = 10.0;
constexpr CGFloat radius = 10.0;
constexpr CGFloat textSize = 13.0;

const unichar returnKey = '\r';
const unichar enterKey = 3;
const unichar escapeKey = 27;

ObjCPointer<NSAttributedString> styled(NSString* text, NSFont* font, NSColor* color) {
    NSDictionary* attributes = @{NSFontAttributeName : font, NSForegroundColorAttributeName : color};
    return ObjCPointer<NSAttributedString>::adopt([[NSAttributedString alloc] initWithString:text
                                                                                  attributes:attributes]);
}

CGFloat heightOf(NSAttributedString* text, CGFloat width) {
    const NSSize size =
        [text boundingRectWithSize:NSMakeSize(width - 4, 1e6) options:NSStringDrawingUsesLineFragmentOrigin].size;
    return std::ceil(size.height);
}

/// The first character of a key press; 0 for none.
unichar keyOf(NSEvent* event) {
    NSString* characters = [event charactersIgnoringModifiers];
    return [characters length] > 0 ? [characters characterAtIndex:0] : 0;
}

} // namespace

/// A button with round corners: blue when Return presses it, with a ring when Space does.
@interface AlertButton : NSButton {
    BOOL _isDefault;
    BOOL _isFocused;
}
- (void)setIsDefault:(BOOL)isDefault;
- (void)setIsFocused:(BOOL)isFocused;
- (NSAttributedString*)text;
@end

@implementation AlertButton

- (void)setIsDefault:(BOOL)isDefault {
    _isDefault = isDefault;
}

- (void)setIsFocused:(BOOL)isFocused {
    _isFocused = isFocused;
    [self setNeedsDisplay:YES];
}

- (BOOL)acceptsFirstResponder {
    return NO; // the alert has the keys
}

- (NSAttributedString*)text {
    NSColor* color = _isDefault ? Palette::highlightedText() : Palette::text();
    return [[styled([self title], [NSFont systemFontOfSize:textSize], color).get() retain] autorelease];
}

- (void)drawRect:(NSRect)dirty {
    const NSRect bounds = [self bounds];
    const bool isPressed = [[self cell] isHighlighted] != NO;
    NSBezierPath* shape = [NSBezierPath bezierPathWithRoundedRect:NSInsetRect(bounds, 2.5, 2.5) xRadius:5 yRadius:5];
    NSColor* fill = _isDefault ? Palette::highlight() : [NSColor whiteColor];
    [(isPressed ? [fill blendedColorWithFraction:0.2 ofColor:[NSColor blackColor]] : fill) set];
    [shape fill];
    [(_isDefault ? Palette::highlight() : Palette::border()) set];
    [shape stroke];
    if (_isFocused) {
        NSBezierPath* ring = [NSBezierPath bezierPathWithRoundedRect:NSInsetRect(bounds, 1, 1) xRadius:6.5 yRadius:6.5];
        [ring setLineWidth:2.0];
        [[Palette::highlight() colorWithAlphaComponent:0.45] set];
        [ring stroke];
    }
    NSAttributedString* text = [self text];
    const NSSize size = [text size];
    [text drawAtPoint:NSMakePoint(std::floor((NSWidth(bounds) - size.width) / 2),
                                  std::floor((NSHeight(bounds) - size.height) / 2))];
}

@end

@implementation AlertView

- (instancetype)initWithAlert:(const menubar::Alert&)alert {
    self = [super initWithFrame:NSMakeRect(0, 0, widest, widest)];
    if (self != nil) {
        _message = styled(menubar::toNSString(menubar::displayTitle(alert.message)),
                          [NSFont boldSystemFontOfSize:textSize], Palette::text());
        _information = styled(menubar::toNSString(menubar::displayText(alert.information, menubar::LineFeeds::keep)),
                              [NSFont systemFontOfSize:textSize - 1], Palette::text());
        _buttons = ObjCPointer<NSMutableArray>::adopt([[NSMutableArray alloc] init]);
        for (const std::string& title : alert.buttons) {
            [self addButton:menubar::toNSString(menubar::displayTitle(title))];
        }
        [self layout];
    }
    return self;
}

- (void)addButton:(NSString*)title {
    const auto button = ObjCPointer<AlertButton>::adopt([[AlertButton alloc] initWithFrame:NSZeroRect]);
    [button.get() setTitle:title];
    [button.get() setTag:static_cast<NSInteger>([_buttons.get() count])];
    [button.get() setIsDefault:[_buttons.get() count] == 0];
    [button.get() setIsFocused:[_buttons.get() count] == 0];
    [button.get() setTarget:self];
    [button.get() setAction:@selector(buttonPressed:)];
    [_buttons.get() addObject:button.get()];
    [self addSubview:button.get()];
}

- (void)setPressed:(std::function<void(std::size_t)>)pressed {
    _pressed = std::move(pressed);
}

- (NSArray*)buttons {
    return _buttons.get();
}

- (BOOL)isFlipped {
    return YES;
}

- (BOOL)acceptsFirstResponder {
    return YES;
}

// Layout

- (NSRect)panelFrame {
    const CGFloat width = std::min(widest, NSWidth([self bounds]) - 2 * padding);
    const CGFloat text = width - 2 * padding;
    const CGFloat height = padding + heightOf(_message.get(), text) + textSpacing + heightOf(_information.get(), text) +
                           padding + buttonHeight + padding;
    return NSMakeRect(std::floor((NSWidth([self bounds]) - width) / 2), 0, width, height);
}

- (void)layout {
    const NSRect panel = [self panelFrame];
    CGFloat right = NSMaxX(panel) - padding;
    for (AlertButton* button in _buttons.get()) {
        const CGFloat width = std::max(narrowestButton, std::ceil([[button text] size].width) + 2 * buttonPadding);
        [button setFrame:NSMakeRect(right - width, NSMaxY(panel) - padding - buttonHeight, width, buttonHeight)];
        right -= width + buttonSpacing;
    }
}

- (void)setFrame:(NSRect)frame {
    [super setFrame:frame];
    [self layout];
}

- (void)drawRect:(NSRect)dirty {
    [[NSColor colorWithCalibratedWhite:0.0 alpha:0.25] set];
    NSRectFillUsingOperation(dirty, NSCompositeSourceOver);
    const NSRect panel = [self panelFrame];
    // The upper corners lie beyond the edge that the panel hangs from.
    NSRect shape = panel;
    shape.origin.y -= radius;
    shape.size.height += radius;
    for (int spread = 6; spread > 0; --spread) {
        [[NSColor colorWithCalibratedWhite:0.0 alpha:0.035] set];
        [[NSBezierPath bezierPathWithRoundedRect:NSInsetRect(shape, -spread, -spread)
                                         xRadius:radius + spread
                                         yRadius:radius + spread] fill];
    }
    NSBezierPath* outline = [NSBezierPath bezierPathWithRoundedRect:NSInsetRect(shape, 0.5, 0.5)
                                                            xRadius:radius
                                                            yRadius:radius];
    [Palette::surface() set];
    [outline fill];
    [Palette::border() set];
    [outline stroke];
    NSRect line = NSInsetRect(panel, padding, padding);
    line.size.height = heightOf(_message.get(), NSWidth(line));
    [_message.get() drawInRect:line];
    line.origin.y = NSMaxY(line) + textSpacing;
    line.size.height = heightOf(_information.get(), NSWidth(line));
    [_information.get() drawInRect:line];
}

// Pointer and keys: all of them are the alert's.

- (void)mouseDown:(NSEvent*)event {
}

- (void)rightMouseDown:(NSEvent*)event {
}

- (void)scrollWheel:(NSEvent*)event {
}

- (void)buttonPressed:(NSButton*)sender {
    [self press:static_cast<NSUInteger>([sender tag])];
}

- (void)press:(NSUInteger)index {
    const auto keepAlive = ObjCPointer<AlertView>::retain(self);
    if (const auto pressed = std::exchange(_pressed, nullptr)) {
        pressed(index);
    }
}

- (void)moveFocus:(NSUInteger)steps {
    [[_buttons.get() objectAtIndex:_focused] setIsFocused:NO];
    _focused = (_focused + steps) % [_buttons.get() count];
    [[_buttons.get() objectAtIndex:_focused] setIsFocused:YES];
}

- (BOOL)performKeyEquivalent:(NSEvent*)event {
    const NSUInteger modifiers = [event modifierFlags] & (NSEventModifierFlagCommand | NSEventModifierFlagOption);
    if (modifiers != 0) {
        return NO;
    }
    switch (keyOf(event)) {
    case returnKey:
    case enterKey:
        [self press:0];
        return YES;
    case escapeKey:
        [self press:[_buttons.get() count] - 1];
        return YES;
    default:
        return NO;
    }
}

- (void)keyDown:(NSEvent*)event {
    const NSUInteger count = [_buttons.get() count];
    switch (keyOf(event)) {
    case ' ':
        [self press:_focused];
        return;
    case '\t':
    case NSLeftArrowFunctionKey:
        [self moveFocus:1];
        return;
    case NSBackTabCharacter:
    case NSRightArrowFunctionKey:
        [self moveFocus:count - 1];
        return;
    default:
        [self performKeyEquivalent:event];
    }
}

@end
