// The part of macOS's controls that GNUstep's do not have.
#import <AppKit/AppKit.h>

#import "compat/gnustep/look/Cells.h"

#include "compat/gnustep/look/Drawing.h"
#include "compat/gnustep/look/Palette.h"

#include <cmath>

namespace {

constexpr double buttonHeight = 24.0;
constexpr double buttonMargin = 14.0; // on each side of its title
constexpr double smallButtonHeight = 19.0;
constexpr double smallButtonMargin = 8.0;
constexpr double plainHeight = 18.0; // of what has no border
constexpr double bareMargin = 2.0;
constexpr double imageGap = 5.0;
constexpr double labelMargin = 2.0;

} // namespace

@implementation NSColor (MenubarShim)

+ (NSColor*)separatorColor {
    return menubar::Palette::separator();
}

@end

@implementation NSView (MenubarShim)

- (NSSize)intrinsicContentSize {
    return NSZeroSize;
}

- (CGFloat)firstBaselineOffsetFromTop {
    return 0.0;
}

- (NSRect)frameForAlignmentRect:(NSRect)rect {
    return rect;
}

- (NSRect)alignmentRectForFrame:(NSRect)frame {
    return frame;
}

- (NSTextInputContext*)inputContext {
    return nil;
}

@end

@implementation NSButton (MenubarShim)

- (NSSize)intrinsicContentSize {
    NSSize size = [[self cell] cellSize];
    NSString* title = [self imagePosition] == NSImageOnly ? @"" : [self title];
    const double image = [self image] != nil ? [[self image] size].width : 0.0;
    const double gap = image > 0.0 && [title length] > 0 ? imageGap : 0.0;
    const double text = [title length] > 0 ? std::ceil(menubar::Drawing::lineWidth(title, [self font])) : 0.0;
    const bool isSmall = [[self cell] controlSize] == NSSmallControlSize;
    size.width = image + gap + text;
    if ([self isBordered]) {
        size.width += 2 * (isSmall ? smallButtonMargin : buttonMargin);
        size.height = isSmall ? smallButtonHeight : buttonHeight;
    } else {
        size.width += 2 * bareMargin;
        size.height = plainHeight;
    }
    return size;
}

@end

@implementation NSPopUpButton (MenubarShim)

- (NSSize)intrinsicContentSize {
    return [[self cell] cellSize];
}

@end

@implementation NSStepper (MenubarShim)

- (NSSize)intrinsicContentSize {
    return NSMakeSize(18.0, buttonHeight);
}

@end

@implementation NSSwitch (MenubarShim)

- (NSSize)intrinsicContentSize {
    return NSMakeSize(38.0, buttonHeight);
}

/// The focus is drawn around it.
- (NSRect)frameForAlignmentRect:(NSRect)rect {
    return NSInsetRect(rect, -3.0, 0.0);
}

@end

@implementation NSTextField (MenubarShim)

- (NSSize)intrinsicContentSize {
    return NSMakeSize(100.0, buttonHeight);
}

/// Of a label: its text begins at the edge of the rectangle.
- (NSRect)frameForAlignmentRect:(NSRect)rect {
    return [self isBezeled] || [[self cell] isKindOfClass:[FieldCell class]] ? rect
                                                                             : NSInsetRect(rect, -labelMargin, 0.0);
}

- (NSRect)alignmentRectForFrame:(NSRect)frame {
    return [self isBezeled] || [[self cell] isKindOfClass:[FieldCell class]] ? frame
                                                                             : NSInsetRect(frame, labelMargin, 0.0);
}

- (void)setPlaceholderString:(NSString*)text {
    [[self cell] setPlaceholderString:text];
    [self setNeedsDisplay:YES];
}

- (void)setMaximumNumberOfLines:(NSInteger)lines {
    if ([[self cell] respondsToSelector:@selector(setMaximumNumberOfLines:)]) {
        [[self cell] setMaximumNumberOfLines:lines];
    }
}

@end

@implementation NSCell (MenubarShim)

/// Labels always do.
- (void)setTruncatesLastVisibleLine:(BOOL)truncates {
}

@end

@implementation NSTextView (MenubarShim)

- (void)breakUndoCoalescing {
}

@end
