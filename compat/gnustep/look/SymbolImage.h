#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/ObjCPointer.h"

#include <string_view>

/// One of the app's drawn symbols: lines of one colour, at any size. Main thread.
@interface SymbolImage : NSImage {
    menubar::ObjCPointer<NSString> _symbolName;
    menubar::ObjCPointer<NSString> _accessibilityDescription;
    menubar::ObjCPointer<NSColor> _ownColor;
    std::string_view _drawing;
}

/// Nil for a name that has no drawing.
+ (SymbolImage*)symbolNamed:(NSString*)name accessibilityDescription:(NSString*)description;

- (NSString*)symbolName;

/// The colour that the image has of itself; nil for none.
- (NSColor*)ownColor;
- (void)setOwnColor:(NSColor*)color;

/// Draws in the current view, which may be flipped or not.
- (void)drawInRect:(NSRect)rect tint:(NSColor*)tint flipped:(BOOL)isFlipped;

@end
