#include "MenubarApp/AppKit/Controls/Look.h"

#import "compat/gnustep/look/Controls.h"
#import "compat/gnustep/look/SymbolImage.h"

#include "MenubarApp/AppKit/Conversions.h"

#include <cmath>

/// Shows a symbol in its tint.
@interface SymbolView : NSImageView {
    menubar::ObjCPointer<NSColor> _tint;
}
@end

@implementation SymbolView

- (NSColor*)contentTintColor {
    return _tint.get();
}

- (void)setContentTintColor:(NSColor*)color {
    _tint = menubar::ObjCPointer<NSColor>::retain(color);
    [self setNeedsDisplay:YES];
}

- (void)drawRect:(NSRect)dirty {
    const NSSize size = [[self image] size];
    const NSRect place = NSInsetRect([self bounds], std::floor((NSWidth([self bounds]) - size.width) / 2),
                                     std::floor((NSHeight([self bounds]) - size.height) / 2));
    [static_cast<SymbolImage*>([self image]) drawInRect:place tint:_tint.get() flipped:[self isFlipped]];
}

@end

namespace menubar {

void NativeLook::dressLabel(NSTextField* label) {
    [label setCell:[[[LabelCell alloc] initTextCell:@""] autorelease]];
}

void NativeLook::dressField(NSTextField* field) {
    [field setCell:[[[FieldCell alloc] initTextCell:@""] autorelease]];
    [field setFocusRingType:NSFocusRingTypeNone];
}

void NativeLook::dressButton(NSButton* button, ButtonStyle style) {
    const bool isSmall = style == ButtonStyle::small;
    [button setBezelStyle:NSRoundedBezelStyle];
    [button setBordered:style != ButtonStyle::borderless];
    [[button cell] setControlSize:isSmall ? NSSmallControlSize : NSRegularControlSize];
    [button setFont:[NSFont systemFontOfSize:isSmall ? [NSFont smallSystemFontSize] : [NSFont systemFontSize]]];
}

void NativeLook::dressCheckbox(NSButton* checkbox) {
    [checkbox setImage:symbol("square", {}, Look::font(Font::body))];
    [checkbox setAlternateImage:symbol("checkmark.square.fill", {}, Look::font(Font::body))];
    [checkbox setImagePosition:NSImageLeft];
    [checkbox setAlignment:NSTextAlignmentLeft];
    [checkbox setFont:Look::font(Font::body)];
}

void NativeLook::dressPicker(NSPopUpButton* picker) {
    [picker setCell:[[[PickerCell alloc] initTextCell:@"" pullsDown:NO] autorelease]];
    [[picker cell] setAltersStateOfSelectedItem:YES];
    [picker setFont:Look::font(Font::body)];
}

NSScrollView* NativeLook::newEditorScrollView(NSTextView* text) {
    OverlayScrollView* scrollView = [[OverlayScrollView alloc] initWithFrame:[text frame]];
    [scrollView setBorderType:NSBezelBorder];
    [scrollView setDrawsBackground:NO];
    [text setDrawsBackground:NO];
    [text setTextContainerInset:NSMakeSize(2.0, 4.0)];
    return scrollView;
}

NSScrollView* NativeLook::newScrollView() {
    return [[OverlayScrollView alloc] initWithFrame:NSZeroRect];
}

NSImageView* NativeLook::newSymbolView() {
    return [[SymbolView alloc] initWithFrame:NSZeroRect];
}

NSImage* NativeLook::symbol(const std::string& name, const std::string& description, NSFont* font) {
    SymbolImage* image = [SymbolImage symbolNamed:toNSString(name) accessibilityDescription:toNSString(description)];
    const CGFloat side = std::round([font pointSize] * 1.25);
    [image setSize:NSMakeSize(side, side)];
    return image;
}

/// GNUstep has no assistive technology to tell.
void NativeLook::describe(NSView*, const Accessibility&) {}

void NativeLook::describeValue(NSView*, double) {}

void NativeLook::keepTextPlain(NSTextView* text) {
    [text setContinuousSpellCheckingEnabled:NO];
    [text setSmartInsertDeleteEnabled:NO];
}

} // namespace menubar
