#import "tests/appkit/Eyes.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/AppKit/ObjCPointer.h"

#include "tests/appkit/Driver.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include <gtest/gtest.h>

namespace menubar::driver {

namespace {

NSBitmapImageRep* newBitmap(std::size_t width, std::size_t height) NS_RETURNS_RETAINED {
    return [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                   pixelsWide:static_cast<NSInteger>(width)
                                                   pixelsHigh:static_cast<NSInteger>(height)
                                                bitsPerSample:8
                                              samplesPerPixel:4
                                                     hasAlpha:YES
                                                     isPlanar:NO
                                               colorSpaceName:NSCalibratedRGBColorSpace
                                                  bytesPerRow:static_cast<NSInteger>(width * 4)
                                                 bitsPerPixel:32];
}

/// The columns or rows of a picture that a stretch of points covers, the end not included.
std::pair<std::size_t, std::size_t> covered(CGFloat from, CGFloat to, std::size_t most) {
    const auto last = static_cast<CGFloat>(most);
    return {static_cast<std::size_t>(std::clamp(std::floor(from), 0.0, last)),
            static_cast<std::size_t>(std::clamp(std::ceil(to), 0.0, last))};
}

} // namespace

Picture Picture::inside(NSRect area) const {
    const auto [left, right] = covered(NSMinX(area), NSMaxX(area), width);
    const auto points = static_cast<CGFloat>(height);
    const auto [top, bottom] = covered(points - NSMaxY(area), points - NSMinY(area), height);
    Picture result{.width = right - left, .height = bottom - top, .pixels = {}};
    for (std::size_t row = top; row < bottom; ++row) {
        const auto begin = pixels.begin() + static_cast<std::ptrdiff_t>(row * width);
        result.pixels.insert(result.pixels.end(), begin + static_cast<std::ptrdiff_t>(left),
                             begin + static_cast<std::ptrdiff_t>(right));
    }
    return result;
}

Picture Picture::outside(NSRect area) const {
    const auto [left, right] = covered(NSMinX(area), NSMaxX(area), width);
    const auto points = static_cast<CGFloat>(height);
    const auto [top, bottom] = covered(points - NSMaxY(area), points - NSMinY(area), height);
    Picture result = *this;
    for (std::size_t row = top; row < bottom; ++row) {
        std::fill_n(result.pixels.begin() + static_cast<std::ptrdiff_t>(row * width + left), right - left, 0U);
    }
    return result;
}

std::size_t Picture::colors() const {
    return std::set(pixels.begin(), pixels.end()).size();
}

Picture lookAtRest(NSWindow* window) {
    Picture seen = look(window);
    int same = 0;
    EXPECT_TRUE(pumpUntil([&] {
        handleWaitingEvents();
        Picture now = look(window);
        same = now == seen ? same + 1 : 0;
        seen = std::move(now);
        return same == looksAtRest;
    })) << "it never comes to rest";
    return seen;
}

Picture lookForNews(NSWindow* window, const Picture& before) {
    EXPECT_TRUE(pumpUntil([&] { return look(window) != before; })) << "nothing is seen of it";
    return lookAtRest(window);
}

NSRect placeInPicture(NSView* view) {
    return [view convertRect:[view bounds] toView:nil];
}

void expectSeen(NSWindow* window, NSRect area, const std::function<void()>& change, const std::function<void()>& undo) {
    const Picture before = lookAtRest(window);
    ASSERT_GT(before.inside(area).colors(), 1U) << "there is nothing to be seen";
    change();
    const Picture after = lookForNews(window, before);
    EXPECT_TRUE(after.outside(area) == before.outside(area)) << "something else has changed";
    if (after == before) {
        return;
    }
    undo();
    EXPECT_TRUE(lookForNews(window, after) == before) << "it does not look as it did at first";
}

void expectUpToDate(NSWindow* window) {
    const Picture seen = lookAtRest(window);
    ASSERT_GT(seen.colors(), 2U);
    [window display];
    const Picture anew = lookAtRest(window);
    if (seen == anew) {
        return;
    }
    std::size_t first = seen.height;
    std::size_t last = 0;
    for (std::size_t at = 0; at < seen.pixels.size(); ++at) {
        if (seen.pixels[at] != anew.pixels[at]) {
            first = std::min(first, at / seen.width);
            last = std::max(last, at / seen.width);
        }
    }
    ADD_FAILURE() << "what is seen in the rows " << first << " to " << last << " is out of date";
}

void save(const Picture& picture, const std::string& path) {
    const auto bitmap = ObjCPointer<NSBitmapImageRep>::adopt(newBitmap(picture.width, picture.height));
    unsigned char* byte = [bitmap.get() bitmapData];
    for (const std::uint32_t pixel : picture.pixels) {
        *byte++ = static_cast<unsigned char>(pixel >> 16);
        *byte++ = static_cast<unsigned char>(pixel >> 8);
        *byte++ = static_cast<unsigned char>(pixel);
        *byte++ = 0xff;
    }
    NSData* png = [bitmap.get() representationUsingType:NSBitmapImageFileTypePNG properties:@{}];
    ASSERT_TRUE([png writeToFile:toNSString(path) atomically:YES]) << path;
}

} // namespace menubar::driver
