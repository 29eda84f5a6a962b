#import "tests/appkit/WindowDriver.h"

#include "MenubarApp/AppKit/Conversions.h"

namespace menubar::driver {

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

} // namespace menubar::driver
