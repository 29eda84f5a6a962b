#import "tests/appkit/Eyes.h"

#import <CoreGraphics/CoreGraphics.h>

#include <dlfcn.h>

namespace menubar::driver {

namespace {

using CreateImage = CGImageRef (*)(CGRect, std::uint32_t, std::uint32_t, std::uint32_t);

constexpr std::uint32_t thisWindowAlone = 1U << 3; // kCGWindowListOptionIncludingWindow
constexpr std::uint32_t withoutShadow = 1U << 0;   // kCGWindowImageBoundsIgnoreFraming
constexpr std::uint32_t onePixelAPoint = 1U << 4;  // kCGWindowImageNominalResolution

} // namespace

const int looksAtRest = 12; // a look takes about as long as a frame; animations begin slowly

/// What the window server has of the window. Its successor asks the person for leave to record the screen, so that the
/// declarations of newer systems withhold this function, which the systems still have.
Picture look(NSWindow* window) {
    Picture picture;
    static const auto createImage = reinterpret_cast<CreateImage>(::dlsym(RTLD_DEFAULT, "CGWindowListCreateImage"));
    if (createImage == nullptr) {
        return picture;
    }
    CGImageRef image = createImage(CGRectNull, thisWindowAlone, static_cast<std::uint32_t>([window windowNumber]),
                                   withoutShadow | onePixelAPoint);
    if (image == nullptr) {
        return picture;
    }
    picture.width = CGImageGetWidth(image);
    picture.height = CGImageGetHeight(image);
    picture.pixels.resize(picture.width * picture.height);
    CGColorSpaceRef colors = CGColorSpaceCreateDeviceRGB();
    CGContextRef context =
        CGBitmapContextCreate(picture.pixels.data(), picture.width, picture.height, 8, picture.width * 4, colors,
                              static_cast<std::uint32_t>(kCGImageAlphaPremultipliedFirst) |
                                  static_cast<std::uint32_t>(kCGBitmapByteOrder32Little));
    const CGRect whole = CGRectMake(0, 0, static_cast<CGFloat>(picture.width), static_cast<CGFloat>(picture.height));
    CGContextDrawImage(context, whole, image);
    CGContextRelease(context);
    CGColorSpaceRelease(colors);
    CGImageRelease(image);
    return picture;
}

} // namespace menubar::driver
