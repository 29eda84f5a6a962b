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

void pressKey(NSWindow* window, NSString* characters, NSUInteger modifiers) {
    @autoreleasepool {
        NSEvent* event = [NSEvent keyEventWithType:NSEventTypeKeyDown
                                          location:NSZeroPoint
                                     modifierFlags:modifiers
                                         timestamp:0
                                      windowNumber:[window windowNumber]
                                           context:nil
                                        characters:characters
                       charactersIgnoringModifiers:characters
                                         isARepeat:NO
                                           keyCode:0];
        [NSApp sendEvent:event];
    }
}

void typeKeys(NSWindow* window, const std::string& text) {
    NSString* characters = toNSString(text);
    for (NSUInteger i = 0; i < [characters length]; ++i) {
        pressKey(window, [characters substringWithRange:NSMakeRange(i, 1)]);
    }
}

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
