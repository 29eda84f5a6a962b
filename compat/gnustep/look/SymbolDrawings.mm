#include "compat/gnustep/look/SymbolDrawings.h"

#include <algorithm>
#include <cmath>

namespace menubar {

namespace {

constexpr CGFloat side = symbolSide;

NSBezierPath* lids() {
    NSBezierPath* path = [NSBezierPath bezierPath];
    [path moveToPoint:NSMakePoint(1.2, 9.0)];
    [path curveToPoint:NSMakePoint(16.8, 9.0)
         controlPoint1:NSMakePoint(5.2, 15.6)
         controlPoint2:NSMakePoint(12.8, 15.6)];
    [path curveToPoint:NSMakePoint(1.2, 9.0) controlPoint1:NSMakePoint(12.8, 2.4) controlPoint2:NSMakePoint(5.2, 2.4)];
    [path closePath];
    [path setLineWidth:1.5];
    [path setLineJoinStyle:NSRoundLineJoinStyle];
    return path;
}

NSBezierPath* circle(CGFloat x, CGFloat y, CGFloat radius) {
    return [NSBezierPath bezierPathWithOvalInRect:NSMakeRect(x - radius, y - radius, 2 * radius, 2 * radius)];
}

NSBezierPath* line(NSPoint from, NSPoint to, CGFloat width) {
    NSBezierPath* path = [NSBezierPath bezierPath];
    [path moveToPoint:from];
    [path lineToPoint:to];
    [path setLineWidth:width];
    [path setLineCapStyle:NSRoundLineCapStyle];
    return path;
}

NSBezierPath* polygon(const NSPoint* points, int count) {
    NSBezierPath* path = [NSBezierPath bezierPath];
    [path moveToPoint:points[0]];
    for (int i = 1; i < count; ++i) {
        [path lineToPoint:points[i]];
    }
    [path closePath];
    return path;
}

/// Whatever is drawn from now on stays out of `shape`, which leaves a gap around a mark.
void clipOut(NSBezierPath* shape) {
    NSBezierPath* outside = [NSBezierPath bezierPathWithRect:NSMakeRect(-side, -side, 3 * side, 3 * side)];
    [outside appendBezierPath:shape];
    [outside setWindingRule:NSEvenOddWindingRule];
    [outside addClip];
}

void drawEye() {
    [lids() stroke];
    [circle(9.0, 9.0, 2.8) fill];
}

void drawTriangle() {
    const NSPoint gap[] = {{12.9, 9.6}, {19.0, -1.2}, {6.8, -1.2}};
    const NSPoint badge[] = {{12.9, 7.4}, {16.9, 0.6}, {8.9, 0.6}};
    [NSGraphicsContext saveGraphicsState];
    clipOut(polygon(gap, 3));
    drawEye();
    [NSGraphicsContext restoreGraphicsState];
    NSBezierPath* triangle = polygon(badge, 3);
    [triangle setLineWidth:1.2];
    [triangle setLineJoinStyle:NSRoundLineJoinStyle];
    [NSGraphicsContext saveGraphicsState];
    NSBezierPath* exclamation = [NSBezierPath bezierPathWithRect:NSMakeRect(12.35, 2.9, 1.1, 2.6)];
    [exclamation appendBezierPath:circle(12.9, 1.65, 0.62)];
    clipOut(exclamation);
    [triangle fill];
    [triangle stroke];
    [NSGraphicsContext restoreGraphicsState];
}

void drawSlash() {
    const NSPoint gap[] = {{1.6, 15.6}, {3.6, 17.6}, {16.9, 4.3}, {14.9, 2.3}};
    [NSGraphicsContext saveGraphicsState];
    clipOut(polygon(gap, 4));
    drawEye();
    [NSGraphicsContext restoreGraphicsState];
    [line(NSMakePoint(3.0, 15.4), NSMakePoint(15.4, 3.0), 1.5) stroke];
}

/// A stroke of the weight of a text.
void stroke(NSBezierPath* path) {
    [path setLineWidth:1.5];
    [path setLineCapStyle:NSRoundLineCapStyle];
    [path setLineJoinStyle:NSRoundLineJoinStyle];
    [path stroke];
}

void drawExclamation(CGFloat x, CGFloat top, CGFloat bottom) {
    [line(NSMakePoint(x, top), NSMakePoint(x, bottom + 3.2), 1.6) stroke];
    [circle(x, bottom + 0.6, 1.0) fill];
}

void drawWarning() {
    const NSPoint corners[] = {{9.0, 16.2}, {17.0, 2.2}, {1.0, 2.2}};
    stroke(polygon(corners, 3));
    drawExclamation(9.0, 11.6, 4.0);
}

void drawStop() {
    const NSPoint corners[] = {{5.6, 17.2}, {12.4, 17.2}, {17.2, 12.4}, {17.2, 5.6},
                               {12.4, 0.8}, {5.6, 0.8},   {0.8, 5.6},   {0.8, 12.4}};
    stroke(polygon(corners, 8));
    stroke(line(NSMakePoint(6.0, 12.0), NSMakePoint(12.0, 6.0), 1.5));
    stroke(line(NSMakePoint(6.0, 6.0), NSMakePoint(12.0, 12.0), 1.5));
}

/// Part of a circle around the middle, counted in degrees from the right, with an arrow's head at its end.
void drawTurn(CGFloat from, CGFloat to) {
    constexpr CGFloat radius = 6.8;
    constexpr CGFloat head = 4.2;
    NSBezierPath* arc = [NSBezierPath bezierPath];
    [arc appendBezierPathWithArcWithCenter:NSMakePoint(9.0, 9.0)
                                    radius:radius
                                startAngle:from
                                  endAngle:to
                                 clockwise:YES];
    const NSPoint tip = [arc currentPoint];
    stroke(arc);
    // The head opens against the way of the turn.
    const CGFloat way = (to - 90.0) * M_PI / 180.0;
    for (const CGFloat spread : {0.75, -0.75}) {
        const CGFloat back = way + M_PI + spread;
        stroke(line(tip, NSMakePoint(tip.x + head * std::cos(back), tip.y + head * std::sin(back)), 1.5));
    }
}

void drawClockwise() {
    drawTurn(20.0, 60.0 - 360.0 + 20.0);
}

void drawCirclePath() {
    drawTurn(165.0, 20.0);
    drawTurn(-15.0, -160.0);
}

void drawLock() {
    NSBezierPath* shackle = [NSBezierPath bezierPath];
    [shackle moveToPoint:NSMakePoint(5.6, 9.0)];
    [shackle lineToPoint:NSMakePoint(5.6, 12.4)];
    [shackle appendBezierPathWithArcWithCenter:NSMakePoint(9.0, 12.4)
                                        radius:3.4
                                    startAngle:180.0
                                      endAngle:0.0
                                     clockwise:YES];
    [shackle lineToPoint:NSMakePoint(12.4, 9.0)];
    stroke(shackle);
    [[NSBezierPath bezierPathWithRoundedRect:NSMakeRect(3.4, 1.6, 11.2, 8.2) xRadius:1.6 yRadius:1.6] fill];
}

void drawMinus() {
    stroke(circle(9.0, 9.0, 7.6));
    stroke(line(NSMakePoint(5.4, 9.0), NSMakePoint(12.6, 9.0), 1.5));
}

void drawPlus() {
    drawMinus();
    stroke(line(NSMakePoint(9.0, 5.4), NSMakePoint(9.0, 12.6), 1.5));
}

struct Entry {
    std::string_view name;
    SymbolDrawing draw;
};

constexpr Entry drawings[] = {
    {"eye", drawEye},
    {"eye.trianglebadge.exclamationmark", drawTriangle},
    {"eye.slash", drawSlash},
    {"exclamationmark.triangle", drawWarning},
    {"xmark.octagon", drawStop},
    {"arrow.clockwise", drawClockwise},
    {"arrow.triangle.2.circlepath", drawCirclePath},
    {"lock", drawLock},
    {"minus.circle", drawMinus},
    {"plus.circle", drawPlus},
};

} // namespace

SymbolDrawing symbolDrawing(std::string_view name) {
    const auto* const found = std::ranges::find(drawings, name, &Entry::name);
    return found == std::ranges::end(drawings) ? nullptr : found->draw;
}

} // namespace menubar
