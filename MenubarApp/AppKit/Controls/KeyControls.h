#pragma once

#import <AppKit/AppKit.h>

namespace menubar {

/// Scrolls whatever the view lies in so that it is seen, for those who move with the keyboard.
void revealFocused(NSView* view);

} // namespace menubar

// AppKit's controls, that come into sight when they get the focus.

@interface MenubarButton : NSButton
@end

@interface MenubarSwitch : NSSwitch
@end

@interface MenubarStepper : NSStepper
@end

@interface MenubarPicker : NSPopUpButton
@end
