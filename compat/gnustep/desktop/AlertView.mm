#import "compat/gnustep/desktop/AlertView.h"

#import "compat/gnustep/shim/SheetWindow.h"

#include "MenubarApp/AppKit/Controls/Look.h"
#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarCore/Text/DisplayText.h"
#include "compat/gnustep/look/Drawing.h"

#include <algorithm>
#include <cmath>
#include <utility>

using menubar::ObjCPointer;
namespace Palette = menubar::Palette;

namespace {

constexpr CGFloat widest = 440.0;
constexpr CGFloat padding = 20.0;
constexpr CGFloat spacing = 8.0;

ObjCPointer<NSTextField> makeLabel(const std::string& text, menubar::Font font) {
    NSTextField* label = [[NSTextField alloc] initWithFrame:NSZeroRect];
    menubar::NativeLook::dressLabel(label);
    [label setFont:menubar::Look::font(font)];
    [label setStringValue:menubar::toNSString(text)];
    return ObjCPointer<NSTextField>::adopt(label);
}

/// Puts the label below a place, and gives where it ends.
CGFloat place(NSTextField* label, NSRect panel, CGFloat top) {
    NSRect frame = NSMakeRect(NSMinX(panel) + padding, top, NSWidth(panel) - 2 * padding, 1e6);
    frame.size.height = [[label cell] cellSizeForBounds:frame].height;
    [label setFrame:frame];
    return NSMaxY(frame);
}

} // namespace

@implementation AlertView

- (instancetype)initWithAlert:(const menubar::Alert&)alert pressed:(std::function<void(std::size_t)>)pressed {
    self = [super initWithFrame:NSZeroRect];
    if (self != nil) {
        _pressed = std::move(pressed);
        _message = makeLabel(menubar::displayTitle(alert.message), menubar::Font::headline);
        _information =
            makeLabel(menubar::displayText(alert.information, menubar::LineFeeds::keep), menubar::Font::body);
        _buttons = ObjCPointer<NSMutableArray>::adopt([[NSMutableArray alloc] init]);
        [self addSubview:_message.get()];
        [self addSubview:_information.get()];
        for (const std::string& title : alert.buttons) {
            [self addButton:menubar::toNSString(menubar::displayTitle(title))];
        }
        [[_buttons.get() lastObject] setKeyEquivalent:@"\033"];
        [[_buttons.get() objectAtIndex:0] setKeyEquivalent:@"\r"];
        [[_buttons.get() objectAtIndex:0] setImagePosition:NSNoImage]; // of the key
        [[_buttons.get() lastObject] setNextKeyView:[_buttons.get() objectAtIndex:0]];
    }
    return self;
}

- (void)addButton:(NSString*)title {
    const auto button = ObjCPointer<NSButton>::adopt([[NSButton alloc] initWithFrame:NSZeroRect]);
    menubar::NativeLook::dressButton(button.get(), menubar::ButtonStyle::bordered);
    [button.get() setTitle:title];
    [button.get() setTag:static_cast<NSInteger>([_buttons.get() count])];
    [button.get() setTarget:self];
    [button.get() setAction:@selector(press:)];
    [[_buttons.get() lastObject] setNextKeyView:button.get()];
    [_buttons.get() addObject:button.get()];
    [self addSubview:button.get()];
}

- (void)end {
    _pressed = nullptr;
    auto* window = static_cast<SheetWindow*>([self window]);
    if ([window sheetView] == self) {
        [window endSheetView];
    }
}

- (NSArray*)buttons {
    return _buttons.get();
}

- (NSRect)panelFrame {
    return _panelFrame;
}

- (BOOL)isFlipped {
    return YES;
}

- (BOOL)acceptsFirstResponder {
    return YES;
}

/// The bar below the content, too, that resizes the window.
- (void)setFrame:(NSRect)frame {
    [super setFrame:NSMakeRect(NSMinX(frame), 0, NSWidth(frame), NSMaxY(frame))];
    const CGFloat width = std::min(widest, NSWidth(frame) - 2 * padding);
    _panelFrame = NSMakeRect(std::floor((NSWidth(frame) - width) / 2), 0, width, 0);
    const CGFloat top = place(_information.get(), _panelFrame, place(_message.get(), _panelFrame, padding) + spacing);
    CGFloat right = NSMaxX(_panelFrame) - padding;
    for (NSButton* button in _buttons.get()) {
        const NSSize size = [button intrinsicContentSize];
        [button setFrame:NSMakeRect(right - size.width, top + padding, size.width, size.height)];
        right -= size.width + spacing;
        _panelFrame.size.height = NSMaxY([button frame]) + padding;
    }
}

- (void)drawRect:(NSRect)dirty {
    [[NSColor colorWithCalibratedWhite:0.0 alpha:0.25] set];
    NSRectFillUsingOperation(dirty, NSCompositeSourceOver);
    [Palette::surface() set];
    NSRectFill(_panelFrame);
    [Palette::border() set];
    NSFrameRect(_panelFrame);
}

/// Not the window's frame, which would move the window: what the pointer does here is the alert's.
- (NSResponder*)nextResponder {
    return [self window];
}

/// The other Return key, on the number pad.
- (void)keyDown:(NSEvent*)event {
    if ([[event charactersIgnoringModifiers] isEqualToString:@"\003"]) {
        [[_buttons.get() objectAtIndex:0] performClick:nil];
    } else {
        [super keyDown:event];
    }
}

- (void)press:(NSButton*)sender {
    const auto keepAlive = ObjCPointer<AlertView>::retain(self);
    if (const auto pressed = std::exchange(_pressed, nullptr)) {
        [self end];
        pressed(static_cast<std::size_t>([sender tag]));
    }
}

@end
