#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/ObjCPointer.h"

/// The tooltip on the screen, of which there is one at most: a small window that wraps its text and keeps to the
/// screen. It comes when the pointer has rested on something for a while, and goes when the pointer goes. Main thread.
@interface Hint : NSObject {
    menubar::ObjCPointer<NSWindow> _window;
    menubar::ObjCPointer<NSTextField> _label;
    menubar::ObjCPointer<NSTimer> _timer;
    menubar::ObjCPointer<NSString> _text;
    id _owner; // not owned, and never asked anything
    menubar::ObjCPointer<NSWindow> _place;
    NSRect _area; // in that window
    NSPoint _pointer;
    NSTimeInterval _restingSince;
}

+ (Hint*)shared;

/// The pointer has moved over what has this tooltip; nil or empty for none. `area`, in the window's coordinates, is
/// what it has to leave for the hint to go. The same owner and area again is no news, but for the text.
- (void)pointAt:(id)owner area:(NSRect)area of:(NSWindow*)window text:(NSString*)text;
/// The text has changed, wherever the pointer is.
- (void)setText:(NSString*)text ofOwner:(id)owner;
- (void)hide;

/// What is shown; nil for nothing.
- (NSString*)text;

@end
