// Implements what shim/AppKit/AppKit.h declares, apart from what belongs to one class of ours.
#import <AppKit/AppKit.h>

#import "compat/gnustep/look/Controls.h"

#include "compat/gnustep/look/Drawing.h"

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

@implementation NSApplication (MenubarShim)

- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy {
    return YES;
}

@end

@implementation NSFont (MenubarShim)

+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(CGFloat)weight {
    const CGFloat halfWay = (NSFontWeightRegular + NSFontWeightBold) / 2;
    return weight > halfWay ? [NSFont boldSystemFontOfSize:size] : [NSFont systemFontOfSize:size];
}

+ (NSFont*)monospacedSystemFontOfSize:(CGFloat)size weight:(CGFloat)weight {
    return [NSFont userFixedPitchFontOfSize:size];
}

@end

@implementation NSTimer (MenubarShim)

- (void)setTolerance:(NSTimeInterval)tolerance {
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
    NSString* title = [self imagePosition] == NSImageOnly ? @"" : [self title];
    const double image = [self image] != nil ? [[self image] size].width : 0.0;
    const double gap = image > 0.0 && [title length] > 0 ? imageGap : 0.0;
    const double width = image + gap + std::ceil(menubar::Drawing::lineWidth(title, [self font]));
    if (![self isBordered]) {
        return NSMakeSize(width + 2 * bareMargin, plainHeight);
    }
    const bool isSmall = [[self cell] controlSize] == NSSmallControlSize;
    return NSMakeSize(width + 2 * (isSmall ? smallButtonMargin : buttonMargin),
                      isSmall ? smallButtonHeight : buttonHeight);
}

@end

@implementation NSTextField (MenubarShim)

- (NSSize)intrinsicContentSize {
    return NSMakeSize(100.0, buttonHeight);
}

/// Of a label: its text begins at the edge of the rectangle.
- (NSRect)frameForAlignmentRect:(NSRect)rect {
    return [[self cell] isKindOfClass:[LabelCell class]] ? NSInsetRect(rect, -labelMargin, 0.0) : rect;
}

- (NSRect)alignmentRectForFrame:(NSRect)frame {
    return [[self cell] isKindOfClass:[LabelCell class]] ? NSInsetRect(frame, labelMargin, 0.0) : frame;
}

- (void)setPlaceholderString:(NSString*)text {
    [[self cell] setPlaceholderString:text];
    [self setNeedsDisplay:YES];
}

- (void)setMaximumNumberOfLines:(NSInteger)lines {
    [static_cast<LabelCell*>([self cell]) setMaximumNumberOfLines:lines];
}

@end
