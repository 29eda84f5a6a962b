#import "compat/gnustep/look/Controls.h"

#include <algorithm>

@implementation OverlayScrollView

/// GNUstep asks for one where the content is wider by a fraction.
- (void)setHasHorizontalScroller:(BOOL)hasScroller {
}

- (void)setHasVerticalScroller:(BOOL)hasScroller {
    [super setHasVerticalScroller:hasScroller];
    [[self verticalScroller] setArrowsPosition:NSScrollerArrowsNone];
}

/// Setting a frame that changes nothing would end in this method again.
- (void)tile {
    const CGFloat border = [self borderType] == NSNoBorder ? 0.0 : 2.0;
    const NSRect inside = NSInsetRect([self bounds], border, border);
    if (!NSEqualRects([[self contentView] frame], inside)) {
        [[self contentView] setFrame:inside];
    }
    NSScroller* scroller = [self verticalScroller];
    const CGFloat width = [NSScroller scrollerWidth];
    const NSRect edge = NSMakeRect(NSMaxX(inside) - width, NSMinY(inside), width, NSHeight(inside));
    if (!NSEqualRects([scroller frame], edge)) {
        [scroller setFrame:edge];
    }
}

/// What cannot scroll any further hands the wheel on.
- (void)scrollWheel:(NSEvent*)event {
    constexpr CGFloat wheelSpeed = 40.0; // points a notch
    NSClipView* clip = [self contentView];
    const NSRect shown = [clip documentVisibleRect];
    const CGFloat lowest = std::max(0.0, NSHeight([clip documentRect]) - NSHeight(shown));
    const CGFloat y = std::clamp(NSMinY(shown) - wheelSpeed * [event deltaY], 0.0, lowest);
    if (y == NSMinY(shown)) {
        [[self nextResponder] scrollWheel:event];
        return;
    }
    [clip scrollToPoint:NSMakePoint(NSMinX(shown), y)];
    [self reflectScrolledClipView:clip];
}

@end
