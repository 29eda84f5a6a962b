#import "compat/gnustep/shim/OverlayScrollView.h"

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

@end
