#import "tests/appkit/WindowDriver.h"

#import "compat/gnustep/desktop/AlertView.h"
#import "compat/gnustep/shim/SheetWindow.h"

#include "MenubarApp/AppKit/Conversions.h"

namespace menubar::driver {

namespace {

NSArray* buttonsOf(NSWindow* window) {
    NSView* sheet = [static_cast<SheetWindow*>(window) sheetView];
    return [sheet isKindOfClass:[AlertView class]] ? [static_cast<AlertView*>(sheet) buttons] : @[];
}

} // namespace

std::vector<std::string> alertButtons(NSWindow* window) {
    std::vector<std::string> titles;
    for (NSButton* button in buttonsOf(window)) {
        titles.push_back(toString([button title]));
    }
    return titles;
}

void clickAlertButton(NSWindow* window, std::size_t index) {
    [[buttonsOf(window) objectAtIndex:index] performClick:nil];
}

} // namespace menubar::driver
