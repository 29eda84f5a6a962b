#include "MenubarApp/AppKit/Controls/Look.h"

#import "compat/gnustep/look/Cells.h"
#import "compat/gnustep/look/SymbolImage.h"
#import "compat/gnustep/shim/OverlayScrollView.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "compat/gnustep/look/Drawing.h"
#include "compat/gnustep/look/Palette.h"

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
    if ([[self image] isKindOfClass:[SymbolImage class]]) {
        const NSSize size = [[self image] size];
        const NSRect bounds = [self bounds];
        [static_cast<SymbolImage*>([self image])
            drawInRect:NSMakeRect(std::floor(NSMidX(bounds) - size.width / 2),
                                  std::floor(NSMidY(bounds) - size.height / 2), size.width, size.height)
                  tint:_tint.get()
               flipped:[self isFlipped]];
    }
}

@end

namespace {

constexpr CGFloat checkSide = 14.0;
constexpr CGFloat checkGap = 6.0; // to the title

} // namespace

/// The mark of a checkbox, on or off.
@interface CheckImage : NSImage {
    BOOL _isOn;
}
- (instancetype)initWithState:(BOOL)isOn;
@end

@implementation CheckImage

- (instancetype)initWithState:(BOOL)isOn {
    self = [super initWithSize:NSMakeSize(checkSide + checkGap, checkSide)];
    if (self != nil) {
        _isOn = isOn;
    }
    return self;
}

- (void)drawInRect:(NSRect)rect
          fromRect:(NSRect)source
         operation:(NSCompositingOperation)operation
          fraction:(CGFloat)fraction
    respectFlipped:(BOOL)respectFlipped
             hints:(NSDictionary*)hints {
    namespace Palette = menubar::Palette;
    rect.size.width = checkSide * NSWidth(rect) / (checkSide + checkGap);
    NSColor* fill = _isOn ? Palette::highlight() : Palette::control();
    menubar::Drawing::drawBezel(rect, fill, _isOn ? fill : Palette::border(), menubar::Drawing::Focus::absent, 3.5);
    if (_isOn) {
        const bool isFlipped = [[NSGraphicsContext currentContext] isFlipped];
        const auto place = [&](CGFloat x, CGFloat y) {
            return NSMakePoint(NSMinX(rect) + x, isFlipped ? NSMaxY(rect) - y : NSMinY(rect) + y);
        };
        const NSPoint mark[] = {place(3.5, 7.0), place(6.0, 4.2), place(10.5, 10.0)};
        menubar::Drawing::strokeLines(mark, 3, 1.7, [NSColor whiteColor]);
    }
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
    [checkbox setImage:[[[CheckImage alloc] initWithState:NO] autorelease]];
    [checkbox setAlternateImage:[[[CheckImage alloc] initWithState:YES] autorelease]];
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
