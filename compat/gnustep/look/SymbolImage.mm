#import "compat/gnustep/look/SymbolImage.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "compat/gnustep/look/Drawing.h"

#include <algorithm>
#include <ranges>
#include <sstream>
#include <string>

namespace {

/// The drawings stand in a square of this side, its origin at the lower left.
constexpr CGFloat side = 18.0;

struct Drawing {
    std::string_view name;
    std::string_view steps;
};

#define EYE "M 1.2 9 A 9 5.4 8.6 155 25 A 9 12.6 8.6 -25 -155 Z S M 11.8 9 A 9 9 2.8 360 0 F "
#define MINUS "M 16.6 9 A 9 9 7.6 360 0 S M 5.4 9 L 12.6 9 S "

/// M: begin at a point; L: a line to a point; A: a part of a circle, by its middle and radius, clockwise from an angle
/// to another; Z: back to the beginning. S strokes what was built, F fills it, K keeps what comes later out of it.
constexpr Drawing drawings[] = {
    {"eye", EYE},
    {"eye.trianglebadge.exclamationmark", "M 12.9 7.4 L 16.9 0.6 L 8.9 0.6 Z M 12.3 2.9 L 13.5 2.9 L 13.5 5.5 L 12.3 "
                                          "5.5 Z M 13.5 1.6 A 12.9 1.6 0.6 360 0 F "
                                          "M 12.9 9.6 L 19 -1.2 L 6.8 -1.2 Z K " EYE},
    {"eye.slash", "M 3 15.4 L 15.4 3 S M 1.6 15.6 L 3.6 17.6 L 16.9 4.3 L 14.9 2.3 Z K " EYE},
    {"exclamationmark.triangle", "M 9 16.2 L 17 2.2 L 1 2.2 Z S M 9 11.6 L 9 7.2 S M 10 4.6 A 9 4.6 1 360 0 F"},
    {"xmark.octagon", "M 5.6 17.2 L 12.4 17.2 L 17.2 12.4 L 17.2 5.6 L 12.4 0.8 L 5.6 0.8 L 0.8 5.6 L 0.8 12.4 Z S "
                      "M 6 12 L 12 6 S M 6 6 L 12 12 S"},
    {"arrow.clockwise", "M 15.4 11.3 A 9 9 6.8 20 -280 S M 6.7 13.4 L 10.2 15.7 L 7.7 19 S"},
    {"arrow.triangle.2.circlepath", "M 2.4 10.8 A 9 9 6.8 165 20 S M 11.6 13.2 L 15.4 11.3 L 17 15.2 S "
                                    "M 15.6 7.2 A 9 9 6.8 -15 -160 S M 6.4 4.8 L 2.6 6.7 L 1 2.8 S"},
    {"lock", "M 5.6 9 L 5.6 12.4 A 9 12.4 3.4 180 0 L 12.4 9 S M 3.4 1.6 L 14.6 1.6 L 14.6 9.8 L 3.4 9.8 Z F"},
    {"minus.circle", MINUS},
    {"plus.circle", MINUS "M 9 5.4 L 9 12.6 S"},
    {"square", "M 0.8 2.3 L 13.2 2.3 L 13.2 14.7 L 0.8 14.7 Z S"},
    {"checkmark.square.fill", "M 0 1.5 L 14 1.5 L 14 15.5 L 0 15.5 Z "
                              "M 2.6 8.2 L 5.8 5 L 11.6 11.6 L 10.4 12.8 L 5.8 7.4 L 3.8 9.4 Z F"},
};

#undef EYE
#undef MINUS

void finish(NSBezierPath* path, char step) {
    [path setWindingRule:NSEvenOddWindingRule];
    if (step == 'F') {
        [path fill];
    } else if (step == 'S') {
        [path setLineWidth:1.5];
        [path setLineCapStyle:NSRoundLineCapStyle];
        [path setLineJoinStyle:NSRoundLineJoinStyle];
        [path stroke];
    } else {
        [path appendBezierPathWithRect:NSMakeRect(-side, -side, 3 * side, 3 * side)];
        [path addClip];
    }
    [path removeAllPoints];
}

void draw(std::string_view drawing) {
    std::istringstream steps{std::string(drawing)};
    const auto number = [&steps] {
        CGFloat value = 0.0;
        steps >> value;
        return value;
    };
    const auto point = [&number] {
        const CGFloat x = number();
        return NSMakePoint(x, number());
    };
    NSBezierPath* path = [NSBezierPath bezierPath];
    for (char step = 0; steps >> step;) {
        if (step == 'M') {
            [path moveToPoint:point()];
        } else if (step == 'L') {
            [path lineToPoint:point()];
        } else if (step == 'A') {
            const NSPoint middle = point();
            const CGFloat radius = number();
            const CGFloat from = number();
            [path appendBezierPathWithArcWithCenter:middle
                                             radius:radius
                                         startAngle:from
                                           endAngle:number()
                                          clockwise:YES];
        } else if (step == 'Z') {
            [path closePath];
        } else {
            finish(path, step);
        }
    }
}

} // namespace

@implementation SymbolImage

+ (SymbolImage*)symbolNamed:(NSString*)name accessibilityDescription:(NSString*)description {
    const auto* const found = std::ranges::find(drawings, menubar::toString(name), &Drawing::name);
    if (found == std::ranges::end(drawings)) {
        return nil;
    }
    SymbolImage* image = [[[SymbolImage alloc] initWithSize:NSMakeSize(side, side)] autorelease];
    image->_drawing = found->steps;
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

- (NSColor*)ownColor {
    return _ownColor.get();
}

- (void)setOwnColor:(NSColor*)color {
    _ownColor = menubar::ObjCPointer<NSColor>::retain(color);
}

- (NSString*)accessibilityDescription {
    return _accessibilityDescription.get();
}

- (BOOL)isTemplate {
    return NO;
}

- (void)drawInRect:(NSRect)rect tint:(NSColor*)tint flipped:(BOOL)isFlipped {
    [NSGraphicsContext saveGraphicsState];
    NSAffineTransform* transform = [NSAffineTransform transform];
    [transform translateXBy:NSMinX(rect) yBy:isFlipped ? NSMaxY(rect) : NSMinY(rect)];
    [transform scaleXBy:NSWidth(rect) / side yBy:(isFlipped ? -1.0 : 1.0) * NSHeight(rect) / side];
    [transform concat];
    [tint set];
    draw(_drawing);
    [NSGraphicsContext restoreGraphicsState];
}

/// What a button draws its image with.
- (void)drawInRect:(NSRect)rect
          fromRect:(NSRect)source
         operation:(NSCompositingOperation)operation
          fraction:(CGFloat)fraction
    respectFlipped:(BOOL)respectFlipped
             hints:(NSDictionary*)hints {
    NSColor* tint = fraction < 1.0 ? menubar::Palette::disabledText() : menubar::Palette::symbol();
    [self drawInRect:rect tint:tint flipped:[[NSGraphicsContext currentContext] isFlipped]];
}

@end
