#include "compat/gnustep/look/Drawing.h"

#include <cmath>

namespace menubar {

void Drawing::drawBezel(NSRect frame, NSColor* fill, NSColor* line, Focus focus, CGFloat radius) {
    const CGFloat width = focus == Focus::present ? 2.0 : 1.0;
    NSBezierPath* shape = [NSBezierPath bezierPathWithRoundedRect:NSInsetRect(frame, width / 2, width / 2)
                                                          xRadius:radius
                                                          yRadius:radius];
    if (fill != nil) {
        [fill setFill];
        [shape fill];
    }
    [(focus == Focus::present ? Palette::highlight() : line) setStroke];
    [shape setLineWidth:width];
    [shape stroke];
}

void Drawing::strokeLines(const NSPoint* points, int count, CGFloat width, NSColor* color) {
    NSBezierPath* path = [NSBezierPath bezierPath];
    [path moveToPoint:points[0]];
    for (int i = 1; i < count; ++i) {
        [path lineToPoint:points[i]];
    }
    [path setLineWidth:width];
    [path setLineCapStyle:NSRoundLineCapStyle];
    [path setLineJoinStyle:NSRoundLineJoinStyle];
    [color setStroke];
    [path stroke];
}

void Drawing::drawControl(NSRect frame, NSCell* cell, Focus focus) {
    drawBezel(frame, [cell isEnabled] ? Palette::control() : Palette::disabledControl(), Palette::border(), focus,
              Palette::controlRadius);
}

void Drawing::drawArrow(NSPoint middle, CGFloat direction, NSColor* color) {
    const CGFloat end = middle.y - 1.5 * direction;
    const NSPoint points[] = {{middle.x - 3.0, end}, {middle.x, middle.y + 1.5 * direction}, {middle.x + 3.0, end}};
    strokeLines(points, 3, 1.5, color);
}

void Drawing::drawLine(NSString* text, NSRect frame, NSFont* font, NSColor* color) {
    NSString* shown = shortened(text, [&](NSString* part) { return lineWidth(part, font) <= NSWidth(frame) + 0.5; });
    const CGFloat top = NSMinY(frame) + std::floor((NSHeight(frame) - lineHeight(font)) / 2);
    [shown drawAtPoint:NSMakePoint(NSMinX(frame), top)
        withAttributes:@{NSFontAttributeName : font, NSForegroundColorAttributeName : color}];
}

double Drawing::lineHeight(NSFont* font) {
    return std::ceil([@"Xg" sizeWithAttributes:@{NSFontAttributeName : font}].height);
}

double Drawing::lineWidth(NSString* text, NSFont* font) {
    return [text sizeWithAttributes:@{NSFontAttributeName : font}].width;
}

Drawing::Focus Drawing::focusOf(NSView* view) {
    NSWindow* window = [view window];
    id responder = [window firstResponder];
    if ([responder isKindOfClass:[NSTextView class]] && [responder isFieldEditor]) {
        responder = [responder delegate];
    }
    return responder == view ? Focus::present : Focus::absent;
}

ObjCPointer<NSWindow> Drawing::makeOverlay(Class type, NSInteger level, NSView* content) {
    auto window = ObjCPointer<NSWindow>::adopt([[type alloc] initWithContentRect:[content frame]
                                                                       styleMask:NSBorderlessWindowMask
                                                                         backing:NSBackingStoreBuffered
                                                                           defer:NO]);
    [window.get() setReleasedWhenClosed:NO];
    [window.get() setLevel:level];
    [window.get() setAcceptsMouseMovedEvents:YES];
    [window.get() setContentView:content];
    return window;
}

bool Drawing::isDefaultButton(NSCell* cell) {
    return [cell isKindOfClass:[NSButtonCell class]] &&
           [[static_cast<NSButtonCell*>(cell) keyEquivalent] isEqualToString:@"\r"];
}

} // namespace menubar
