#import "tests/appkit/Eyes.h"

#import <GNUstepGUI/GSDisplayServer.h>

namespace menubar::driver {

const int looksAtRest = 3;

/// The X server's pixels, where nothing but other windows can come between.
Picture look(NSWindow* window) {
    @autoreleasepool {
        Picture picture;
        NSImage* image = [GSServerForWindow(window) contentsOfScreen:[[window screen] screenNumber]
                                                              inRect:[window frame]];
        for (NSImageRep* rep in [image representations]) {
            if (![rep isKindOfClass:[NSBitmapImageRep class]]) {
                continue;
            }
            auto* bitmap = static_cast<NSBitmapImageRep*>(rep);
            picture.width = static_cast<std::size_t>([bitmap pixelsWide]);
            picture.height = static_cast<std::size_t>([bitmap pixelsHigh]);
            const auto samples = static_cast<std::size_t>([bitmap samplesPerPixel]);
            const auto bytesPerRow = static_cast<std::size_t>([bitmap bytesPerRow]);
            picture.pixels.resize(picture.width * picture.height);
            for (std::size_t y = 0; y < picture.height; ++y) {
                const unsigned char* from = [bitmap bitmapData] + y * bytesPerRow;
                std::uint32_t* to = picture.pixels.data() + y * picture.width;
                for (std::size_t x = 0; x < picture.width; ++x, from += samples) {
                    to[x] = static_cast<std::uint32_t>(from[0] << 16 | from[1] << 8 | from[2]);
                }
            }
        }
        return picture;
    }
}

} // namespace menubar::driver
