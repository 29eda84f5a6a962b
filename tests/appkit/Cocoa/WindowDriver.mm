#import "tests/appkit/WindowDriver.h"

#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"

#include <algorithm>

namespace menubar::driver {

namespace {

void collectButtons(NSView* view, std::vector<NSButton*>& into) {
    if ([view isKindOfClass:[NSButton class]] && ![view isHidden] &&
        [[static_cast<NSButton*>(view) title] length] > 0) {
        into.push_back(static_cast<NSButton*>(view));
    }
    for (NSView* child in [view subviews]) {
        collectButtons(child, into);
    }
}

/// An alert's first button is rightmost, or on top where they do not fit side by side.
std::vector<NSButton*> buttonsOf(NSWindow* window) {
    std::vector<NSButton*> buttons;
    collectButtons([[window attachedSheet] contentView], buttons);
    std::ranges::sort(buttons, [](NSButton* first, NSButton* second) {
        const NSRect a = [first convertRect:[first bounds] toView:nil];
        const NSRect b = [second convertRect:[second bounds] toView:nil];
        return NSMidY(a) != NSMidY(b) ? NSMidY(a) > NSMidY(b) : NSMidX(a) > NSMidX(b);
    });
    return buttons;
}

} // namespace

std::vector<std::string> alertButtons(NSWindow* window) {
    std::vector<std::string> titles;
    for (NSButton* button : buttonsOf(window)) {
        titles.push_back(toString([button title]));
    }
    return titles;
}

void clickAlertButton(NSWindow* window, std::size_t index) {
    NSWindow* sheet = [window attachedSheet];
    [buttonsOf(window).at(index) performClick:nil];
    // It slides away, and answers then.
    (void)pumpUntil([&] { return [window attachedSheet] != sheet; });
}

} // namespace menubar::driver
