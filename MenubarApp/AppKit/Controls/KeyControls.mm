#import "MenubarApp/AppKit/Controls/KeyControls.h"

namespace {

/// Around a control that is scrolled to, so that it does not stick to the edge.
constexpr CGFloat margin = 8.0;

} // namespace

void menubar::revealFocused(NSView* view) {
    [view scrollRectToVisible:NSInsetRect([view bounds], -margin, -margin)];
}

@implementation MenubarButton

- (BOOL)becomeFirstResponder {
    menubar::revealFocused(self);
    return [super becomeFirstResponder];
}

@end

@implementation MenubarSwitch

- (BOOL)becomeFirstResponder {
    menubar::revealFocused(self);
    return [super becomeFirstResponder];
}

@end

@implementation MenubarStepper

- (BOOL)becomeFirstResponder {
    menubar::revealFocused(self);
    return [super becomeFirstResponder];
}

@end

@implementation MenubarPicker

- (BOOL)becomeFirstResponder {
    menubar::revealFocused(self);
    return [super becomeFirstResponder];
}

@end
