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

class BoxAdapter final : public AdapterFor<Box, MenubarBoxView> {
public:
    BoxAdapter() : AdapterFor([[MenubarBoxView alloc] initWithFrame:NSZeroRect]) {}

protected:
    void apply(const Change<Box>&) override {}
};

class DividerAdapter final : public AdapterFor<Divider, MenubarDividerView> {
public:
    DividerAdapter() : AdapterFor([[MenubarDividerView alloc] initWithFrame:NSZeroRect]) {}

protected:
    void apply(const Change<Divider>&) override {}
};

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

protected:
    // Spacing is the layout's affair.
    void apply(const Change<ScrollView>&) override {}
};

} // namespace

AdapterPointer makeBoxAdapter() {
    return std::make_unique<BoxAdapter>();
}

AdapterPointer makeDividerAdapter() {
    return std::make_unique<DividerAdapter>();
}

AdapterPointer makeScrollViewAdapter() {
    return std::make_unique<ScrollViewAdapter>();
}

} // namespace menubar
