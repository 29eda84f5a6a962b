#import "MenubarApp/AppKit/AppKitUserDefaults.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/AppKit/Desktop.h"

namespace menubar {

std::optional<bool> AppKitUserDefaults::boolValue(std::string_view key) const {
    @autoreleasepool {
        id value = Desktop::storedDefault(toNSString(key));
        // Bools have a class of their own on both platforms; the number 1 and the text "1" are of other classes.
        if (![value isKindOfClass:[[NSNumber numberWithBool:YES] class]]) {
            return std::nullopt;
        }
        return [value boolValue] != NO;
    }
}

void AppKitUserDefaults::setBool(std::string_view key, bool value) {
    @autoreleasepool {
        Desktop::storeDefault(toNSString(key), value);
    }
}

} // namespace menubar
