#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/ObjCPointer.h"

/// A tooltip: a small window that wraps its text and keeps to the screen. Main thread.
@interface HintWindow : NSObject {
    menubar::ObjCPointer<NSWindow> _window;
    menubar::ObjCPointer<NSString> _text;
}

/// Shows `text` with its upper left corner at `corner` (screen coordinates), or as near as the screen allows.
- (void)show:(NSString*)text at:(NSPoint)corner;
- (void)hide;

/// What is shown; nil for nothing.
- (NSString*)text;
- (NSWindow*)window;

@end
