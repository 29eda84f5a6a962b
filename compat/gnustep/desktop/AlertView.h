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

- (instancetype)initWithAlert:(const menubar::Alert&)alert;

/// Called with the index of the pressed button; the view may go during the call.
- (void)setPressed:(std::function<void(std::size_t)>)pressed;

/// The NSButtons, the first first.
- (NSArray*)buttons;

/// Where the alert lies.
- (NSRect)panelFrame;

@end
