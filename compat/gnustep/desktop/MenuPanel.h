#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/ObjCPointer.h"

@class MenuView;

/// Shows a menu and tracks mouse and keyboard until it is closed. GNUstep's own menus cannot do it: they neither tell
/// their delegate nor survive a change of their items while they are open.
///
/// As on macOS: a click opens and a second click chooses, or one press is held and let go over an item; arrow keys,
/// Return, Space, Escape and key equivalents work; a press anywhere else closes. The run loop is in
/// NSEventTrackingRunLoopMode all the while. Changes of the menu's items show at once. Main thread.
@interface MenuPanel : NSObject {
    menubar::ObjCPointer<NSMenu> _menu;
    menubar::ObjCPointer<NSWindow> _window;
    menubar::ObjCPointer<MenuView> _view;
    menubar::ObjCPointer<NSMenuItem> _chosen;
    NSRect _strip;
    NSPoint _mouse;            // the last position seen, in screen coordinates
    NSTimeInterval _pressedAt; // when the press that opened the menu began; 0 once it is over
    BOOL _isDone;
    BOOL _isStale;
}

- (instancetype)initWithMenu:(NSMenu*)menu;

/// Opens below `strip` (screen coordinates), with the item of that index highlighted and in sight, and returns the one
/// that was chosen, nil for none. `press` is the event that opened the menu, nil when no button is down.
- (NSMenuItem*)trackBelow:(NSRect)strip from:(NSInteger)index pressedBy:(NSEvent*)press;

/// Ends the tracking without choosing.
- (void)cancel;

/// The one that is open, for tests; nil when none is.
+ (MenuPanel*)current;
- (NSMenu*)menu;
- (NSWindow*)window;
- (MenuView*)view;

@end
