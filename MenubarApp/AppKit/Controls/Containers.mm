// What holds other controls: the background of a section, and what scrolls.
#import "MenubarApp/AppKit/Controls/Containers.h"

#include "MenubarApp/AppKit/Controls/ControlAdapter.h"
#include "MenubarApp/AppKit/Controls/Look.h"

@implementation MenubarFlippedView

- (BOOL)isFlipped {
    return YES;
}

@end

@implementation MenubarBoxView

- (void)drawRect:(NSRect)dirty {
    constexpr CGFloat radius = 6.0;
    // Half a point in, so that the line lies on the pixels at the edge.
    NSBezierPath* shape = [NSBezierPath bezierPathWithRoundedRect:NSInsetRect([self bounds], 0.5, 0.5)
                                                          xRadius:radius
                                                          yRadius:radius];
    [[NSColor controlBackgroundColor] setFill];
    [shape fill];
    [[NSColor separatorColor] setStroke];
    [shape stroke];
}

@end

@implementation MenubarDividerView

- (void)drawRect:(NSRect)dirty {
    [[NSColor separatorColor] setFill];
    NSRectFillUsingOperation([self bounds], NSCompositingOperationSourceOver);
}

@end

namespace menubar {

namespace {

class ScrollViewAdapter final : public AdapterFor<ScrollView, NSScrollView> {
public:
    ScrollViewAdapter() : AdapterFor(NativeLook::newScrollView()) {
        NSScrollView* scrollView = native();
        [scrollView setHasVerticalScroller:YES];
        [scrollView setHasHorizontalScroller:NO];
        [scrollView setAutohidesScrollers:YES];
        [scrollView setBorderType:NSNoBorder];
        [scrollView setDrawsBackground:NO];
        [scrollView setDocumentView:[[[MenubarFlippedView alloc] initWithFrame:NSZeroRect] autorelease]];
    }

    [[nodiscard]] NSView* contentView() const override { return [native() documentView]; }
};

} // namespace

AdapterPointer makeAdapter(const Box&, const Reporter&) {
    return std::make_unique<AdapterFor<Box, NSView>>([[MenubarBoxView alloc] initWithFrame:NSZeroRect]);
}

AdapterPointer makeAdapter(const Divider&, const Reporter&) {
    return std::make_unique<AdapterFor<Divider, NSView>>([[MenubarDividerView alloc] initWithFrame:NSZeroRect]);
}

AdapterPointer makeAdapter(const ScrollView&, const Reporter&) {
    return std::make_unique<ScrollViewAdapter>();
}

} // namespace menubar
