#import "MenubarApp/AppKit/Conversions.h"

#include <vector>

#include <unicode/ustring.h>

namespace menubar {

namespace {

constexpr UChar32 replacement = 0xFFFD;

} // namespace

// ICU does the conversion: Foundation's initialisers give nil for ill-formed bytes, and GNUstep's and Apple's do not
// agree about what is ill-formed.
NSString* toNSString(std::string_view utf8) {
    // A blank goes in front and is cut off again: GNUstep would take a byte-order mark there for a statement about the
    // text, drop it and perhaps swap the bytes of the rest.
    std::vector<UChar> units(utf8.size() + 2); // UTF-16 never has more units than UTF-8 has bytes
    units[0] = ' ';
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(units.data() + 1, static_cast<int32_t>(units.size() - 1), &length, utf8.data(),
                         static_cast<int32_t>(utf8.size()), replacement, nullptr, &status);
    if (U_FAILURE(status)) {
        return @"";
    }
    static_assert(sizeof(UChar) == sizeof(unichar));
    return [[NSString stringWithCharacters:reinterpret_cast<const unichar*>(units.data())
                                    length:static_cast<NSUInteger>(length) + 1] substringFromIndex:1];
}

std::string toString(NSString* text) {
    std::vector<unichar> units([text length]);
    [text getCharacters:units.data() range:NSMakeRange(0, units.size())];
    std::string utf8(units.size() * 3, '\0'); // the most bytes that one unit takes
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8WithSub(utf8.data(), static_cast<int32_t>(utf8.size()), &length,
                       reinterpret_cast<const UChar*>(units.data()), static_cast<int32_t>(units.size()), replacement,
                       nullptr, &status);
    utf8.resize(U_FAILURE(status) ? 0 : static_cast<std::size_t>(length));
    return utf8;
}

NSURL* toFileURL(std::string_view path) {
    // Told that it is no directory, NSURL does not look at the disk.
    return [NSURL fileURLWithPath:toNSString(path) isDirectory:NO];
}

} // namespace menubar
