#import "MenubarApp/AppKit/GNUstep/SymbolImage.h"

namespace {

// The drawings stand in a square of 18 by 18, its origin at the lower left.
constexpr CGFloat side = 18.0;

enum class Mark { none, triangle, slash };

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

void draw(Mark mark) {
    switch (mark) {
    case Mark::none:
        drawEye();
        return;
    case Mark::triangle:
        drawTriangle();
        return;
    case Mark::slash:
        drawSlash();
        return;
    }
}

Mark markOf(NSString* name) {
    if ([name isEqualToString:@"eye.trianglebadge.exclamationmark"]) {
        return Mark::triangle;
    }
    return [name isEqualToString:@"eye.slash"] ? Mark::slash : Mark::none;
}

} // namespace

@implementation SymbolImage

+ (SymbolImage*)symbolNamed:(NSString*)name accessibilityDescription:(NSString*)description {
    if (![@[ @"eye", @"eye.trianglebadge.exclamationmark", @"eye.slash" ] containsObject:name]) {
        return nil;
    }
    SymbolImage* image = [[[SymbolImage alloc] initWithSize:NSMakeSize(side, side)] autorelease];
    image->_symbolName = menubar::ObjCPointer<NSString>::adopt([name copy]);
    image->_accessibilityDescription = menubar::ObjCPointer<NSString>::adopt([description copy]);
    return image;
}

/// NSImage copies an object's memory as it is, which would copy the owning pointers without their references.
- (id)copyWithZone:(NSZone*)zone {
    return [self retain];
}

- (NSString*)symbolName {
    return _symbolName.get();
}

- (NSString*)accessibilityDescription {
    return _accessibilityDescription.get();
}

- (BOOL)isTemplate {
    return _isTemplate;
}

- (void)setTemplate:(BOOL)isTemplate {
    _isTemplate = isTemplate;
}

- (void)drawInRect:(NSRect)rect tint:(NSColor*)tint flipped:(BOOL)isFlipped {
    [NSGraphicsContext saveGraphicsState];
    NSAffineTransform* transform = [NSAffineTransform transform];
    [transform translateXBy:NSMinX(rect) yBy:isFlipped ? NSMaxY(rect) : NSMinY(rect)];
    [transform scaleXBy:NSWidth(rect) / side yBy:(isFlipped ? -1.0 : 1.0) * NSHeight(rect) / side];
    [transform concat];
    [tint set];
    draw(markOf(_symbolName.get()));
    [NSGraphicsContext restoreGraphicsState];
}

@end
