#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/ObjCPointer.h"

@class StatusStripButton;

/// Stands in for the status item that GNUstep does not have: a strip at the top right of the screen with an image and a
/// title, whose menu opens below it.
///
/// As in a real menu bar, an item that does not fit is moved off the screen without a word. Main thread.
@interface StatusStripItem : NSStatusItem {
    menubar::ObjCPointer<NSWindow> _window;
    menubar::ObjCPointer<StatusStripButton> _button;
    menubar::ObjCPointer<NSMenu> _stripMenu;
    menubar::ObjCPointer<NSString> _autosaveName;
    CGFloat _room;
    BOOL _isOpen;
}

/// The width that the menu bar has left, in points; at first all of the screen's. For tests.
- (void)setRoom:(CGFloat)room;

- (NSWindow*)window;
- (BOOL)isOnScreen;
- (BOOL)isOpen;

/// Opens the menu below the strip and returns when it is closed again and the chosen item's action has run. `event` is
/// the press that opened it, or nil.
- (void)openMenuWithEvent:(NSEvent*)event;

/// Fits the window to the button's contents.
- (void)layout;

@end

/// The item's button. It draws itself, and counts how often, so that tests can tell a needless change.
@interface StatusStripButton : NSStatusBarButton {
    StatusStripItem* _item; // not owned: it owns this button
    menubar::ObjCPointer<NSColor> _tint;
    menubar::ObjCPointer<NSString> _label;
    NSUInteger _changes;
}

- (instancetype)initWithItem:(StatusStripItem*)item;
- (CGFloat)contentWidth;
/// How often an image, title, tint or tooltip was set.
- (NSUInteger)changes;
/// The item goes first.
- (void)forgetItem;

@end
