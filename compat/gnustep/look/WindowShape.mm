#import "compat/gnustep/look/WindowShape.h"

#import <GNUstepGUI/GSDisplayServer.h>

#include "MenubarApp/AppKit/ObjCPointer.h"

#include <algorithm>
#include <cstring>

namespace menubar {

namespace {

/// How many pixels of a rounded corner's row are outside, `row` counted from the straight edge.
int cutOff(int row, int radius) {
    const int up = radius - row;
    int outside = 0;
    while (outside < radius && (radius - outside) * (radius - outside) + up * up > radius * radius + radius / 2) {
        ++outside;
    }
    return outside;
}

} // namespace

void roundCorners(NSWindow* window, RoundedCorners corners, int radius) {
    const auto width = static_cast<int>(NSWidth([window frame]));
    const auto height = static_cast<int>(NSHeight([window frame]));
    if (width < 2 * radius || height < 2 * radius) {
        return;
    }
    const auto mask = ObjCPointer<NSBitmapImageRep>::adopt([[NSBitmapImageRep alloc]
        initWithBitmapDataPlanes:nullptr
                      pixelsWide:width
                      pixelsHigh:height
                   bitsPerSample:8
                 samplesPerPixel:4
                        hasAlpha:YES
                        isPlanar:NO
                  colorSpaceName:NSCalibratedRGBColorSpace
                     bytesPerRow:0
                    bitsPerPixel:0]);
    unsigned char* pixels = [mask.get() bitmapData];
    const auto bytesPerRow = static_cast<std::size_t>([mask.get() bytesPerRow]);
    for (int y = 0; y < height; ++y) {
        const int fromTop = corners == RoundedCorners::all ? y : radius;
        const int row = std::min({fromTop, height - 1 - y, radius});
        const int outside = cutOff(row, radius);
        unsigned char* line = pixels + static_cast<std::size_t>(y) * bytesPerRow;
        std::memset(line, 0xff, static_cast<std::size_t>(width) * 4);
        std::memset(line, 0, static_cast<std::size_t>(outside) * 4);
        std::memset(line + static_cast<std::size_t>(width - outside) * 4, 0, static_cast<std::size_t>(outside) * 4);
    }
    const auto image = ObjCPointer<NSImage>::adopt([[NSImage alloc] initWithSize:NSMakeSize(width, height)]);
    [image.get() addRepresentation:mask.get()];
    [GSServerForWindow(window) restrictWindow:static_cast<int>([window windowNumber]) toImage:image.get()];
}

NSBezierPath* roundedOutline(NSRect bounds, RoundedCorners corners, int radius, bool isFlipped) {
    NSRect line = NSInsetRect(bounds, 0.5, 0.5);
    if (corners == RoundedCorners::lower) {
        // The upper corners are drawn beyond the edge.
        line.size.height += radius;
        line.origin.y -= isFlipped ? radius : 0;
    }
    return [NSBezierPath bezierPathWithRoundedRect:line xRadius:radius - 0.5 yRadius:radius - 0.5];
}

} // namespace menubar
