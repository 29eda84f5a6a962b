#import "compat/gnustep/look/SymbolImage.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "compat/gnustep/look/Palette.h"
#include "compat/gnustep/look/SymbolDrawings.h"

namespace {

constexpr CGFloat side = menubar::symbolSide;

} // namespace

@implementation SymbolImage

+ (SymbolImage*)symbolNamed:(NSString*)name accessibilityDescription:(NSString*)description {
    const menubar::SymbolDrawing drawing = menubar::symbolDrawing(menubar::toString(name));
    if (drawing == nullptr) {
        return nil;
    }
    SymbolImage* image = [[[SymbolImage alloc] initWithSize:NSMakeSize(side, side)] autorelease];
    image->_drawing = drawing;
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
    _drawing();
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
