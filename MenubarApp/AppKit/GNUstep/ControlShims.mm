// The part of macOS's controls that GNUstep's do not have.
#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/GNUstep/Palette.h"

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

@implementation NSTextField (MenubarShim)

- (void)setPlaceholderString:(NSString*)text {
    [[self cell] setPlaceholderString:text];
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
