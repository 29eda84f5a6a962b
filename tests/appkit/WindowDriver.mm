#import "tests/appkit/WindowDriver.h"

#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"

namespace menubar::driver {

NSEvent* keyEvent(NSWindow* window, NSEventType type, NSString* characters, NSUInteger modifiers) {
    return [NSEvent keyEventWithType:type
                            location:NSZeroPoint
                       modifierFlags:modifiers
                           timestamp:static_cast<NSTimeInterval>([[NSProcessInfo processInfo] systemUptime])
                        windowNumber:[window windowNumber]
                             context:nil
                          characters:characters
         charactersIgnoringModifiers:characters
                           isARepeat:NO
                             keyCode:keyCode([characters characterAtIndex:0])];
}

void pressKey(NSWindow* window, NSString* characters, NSUInteger modifiers) {
    @autoreleasepool {
        NSWindow* sheet = [window attachedSheet];
        [NSApp sendEvent:keyEvent(sheet != nil ? sheet : window, NSEventTypeKeyDown, characters, modifiers)];
    }
}

void typeKeys(NSWindow* window, const std::string& text) {
    NSString* characters = toNSString(text);
    for (NSUInteger i = 0; i < [characters length]; ++i) {
        pressKey(window, [characters substringWithRange:NSMakeRange(i, 1)]);
    }
}

} // namespace menubar::driver
