#import "compat/gnustep/look/Controls.h"

#include "compat/gnustep/look/Drawing.h"

#include <algorithm>
#include <cmath>

namespace {

namespace Drawing = menubar::Drawing;
namespace Palette = menubar::Palette;

constexpr CGFloat labelMargin = 2.0; // on each side, as the field editor has it
constexpr CGFloat fieldMargin = 7.0;
constexpr CGFloat pickerLeading = 10.0;
constexpr CGFloat pickerTrailing = 26.0; // for the arrows
constexpr CGFloat pickerHeight = 24.0;

NSDictionary* wrapped(NSFont* font, NSColor* color) {
    NSMutableParagraphStyle* style = [[[NSMutableParagraphStyle alloc] init] autorelease];
    [style setLineBreakMode:NSLineBreakByWordWrapping];
    return @{
        NSFontAttributeName : font,
        NSForegroundColorAttributeName : color,
        NSParagraphStyleAttributeName : style,
    };
}

NSSize sizeOf(NSString* text, CGFloat width, NSDictionary* attributes) {
    NSAttributedString* styled = [[[NSAttributedString alloc] initWithString:text attributes:attributes] autorelease];
    return [styled boundingRectWithSize:NSMakeSize(width, 1e6) options:NSStringDrawingUsesLineFragmentOrigin].size;
}

} // namespace

@implementation LabelCell

- (void)setMaximumNumberOfLines:(NSInteger)lines {
    _maximumNumberOfLines = lines;
}

- (void)setTruncatesLastVisibleLine:(BOOL)truncates {
}

- (NSRect)titleRectForBounds:(NSRect)bounds {
    return NSInsetRect(bounds, labelMargin, 0.0);
}

- (NSRect)drawingRectForBounds:(NSRect)bounds {
    return bounds;
}

- (NSSize)cellSizeForBounds:(NSRect)bounds {
    const NSSize size =
        sizeOf([self stringValue], NSWidth(bounds) - 2 * labelMargin, wrapped([self font], [self textColor]));
    return NSMakeSize(std::ceil(size.width) + 2 * labelMargin,
                      std::max(std::ceil(size.height), Drawing::lineHeight([self font])));
}

- (NSString*)textShownIn:(NSSize)size {
    NSString* text = [self stringValue];
    if (_maximumNumberOfLines <= 0) {
        return text;
    }
    NSDictionary* look = wrapped([self font], [self textColor]);
    const CGFloat most = Drawing::lineHeight([self font]) * static_cast<CGFloat>(_maximumNumberOfLines);
    const CGFloat width = size.width - 2 * labelMargin;
    return Drawing::shortened(text, [&](NSString* part) { return sizeOf(part, width, look).height <= most + 0.5; });
}

- (void)drawInteriorWithFrame:(NSRect)frame inView:(NSView*)view {
    if ([view isKindOfClass:[NSControl class]] && [static_cast<NSControl*>(view) currentEditor] != nil) {
        return; // the editor draws the text, for it to be selected
    }
    [[self textShownIn:frame.size] drawInRect:[self titleRectForBounds:frame]
                               withAttributes:wrapped([self font], [self textColor])];
}

@end

@implementation FieldCell

- (NSRect)titleRectForBounds:(NSRect)bounds {
    const CGFloat height = Drawing::lineHeight([self font]);
    return NSMakeRect(NSMinX(bounds) + fieldMargin, NSMinY(bounds) + std::floor((NSHeight(bounds) - height) / 2),
                      std::max(0.0, NSWidth(bounds) - 2 * fieldMargin), height);
}

- (NSRect)drawingRectForBounds:(NSRect)bounds {
    return bounds;
}

- (NSText*)setUpFieldEditorAttributes:(NSText*)editor {
    NSText* result = [super setUpFieldEditorAttributes:editor];
    [result setDrawsBackground:NO]; // the placeholder shows through
    return result;
}

- (void)drawWithFrame:(NSRect)frame inView:(NSView*)view {
    _control_view = view; // which is told when what it shows changes
    const bool isField = [view isKindOfClass:[NSControl class]];
    NSText* editor = isField ? [static_cast<NSControl*>(view) currentEditor] : nil;
    Drawing::drawControl(frame, self, editor != nil ? Drawing::Focus::present : Drawing::Focus::absent);
    const NSRect room = [self titleRectForBounds:frame];
    NSString* text = editor != nil ? [editor string] : [self stringValue];
    if ([text length] == 0) {
        if ([[self placeholderString] length] > 0) {
            Drawing::drawLine([self placeholderString], room, [self font], Palette::placeholder());
        }
    } else if (editor == nil) {
        [NSGraphicsContext saveGraphicsState];
        NSRectClip(room);
        NSColor* color = [self isEnabled] ? Palette::text() : Palette::disabledText();
        [text drawAtPoint:room.origin
            withAttributes:@{NSFontAttributeName : [self font], NSForegroundColorAttributeName : color}];
        [NSGraphicsContext restoreGraphicsState];
    }
}

- (void)drawInteriorWithFrame:(NSRect)frame inView:(NSView*)view {
    [self drawWithFrame:frame inView:view];
}

@end

@implementation PickerCell

- (NSSize)cellSize {
    double widest = 0.0;
    for (NSMenuItem* item in [self itemArray]) {
        widest = std::max(widest, Drawing::lineWidth([item title], [self font]));
    }
    return NSMakeSize(std::ceil(widest) + pickerLeading + pickerTrailing, pickerHeight);
}

- (void)drawWithFrame:(NSRect)frame inView:(NSView*)view {
    NSColor* color = [self isEnabled] ? Palette::text() : Palette::disabledText();
    Drawing::drawControl(frame, self, Drawing::focusOf(view));
    if ([self indexOfSelectedItem] >= 0) {
        NSRect room = frame;
        room.origin.x += pickerLeading;
        room.size.width -= pickerLeading + pickerTrailing;
        Drawing::drawLine([self titleOfSelectedItem], room, [self font], color);
    }
    const CGFloat x = NSMaxX(frame) - pickerTrailing / 2;
    for (const CGFloat side : {-1.0, 1.0}) {
        Drawing::drawArrow(NSMakePoint(x, NSMidY(frame) + 4.0 * side), side, color);
    }
}

@end
