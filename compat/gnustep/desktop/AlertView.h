#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/ObjCPointer.h"
#include "MenubarApp/View/Window.h"

#include <cstddef>
#include <functional>

/// Covers a window with a shade and hangs an alert from the upper edge: a message, a text, and buttons, the first of
/// them rightmost. Return presses the first, Escape the last, Space the one that Tab has led to. Main thread.
@interface AlertView : NSView {
    menubar::ObjCPointer<NSMutableArray> _buttons;
    menubar::ObjCPointer<NSTextField> _message;
    menubar::ObjCPointer<NSTextField> _information;
    std::function<void(std::size_t)> _pressed;
    NSRect _panelFrame;
}

/// `pressed` is called with the index of the pressed button, once the window has let go of the view.
- (instancetype)initWithAlert:(const menubar::Alert&)alert pressed:(std::function<void(std::size_t)>)pressed;

/// Takes it off the window; nobody is told any more.
- (void)end;

/// The NSButtons, the first first.
- (NSArray*)buttons;

/// Where the alert lies.
- (NSRect)panelFrame;

@end
