#import "MenubarApp/AppKit/Controls/Look.h"

#include <cmath>

namespace menubar {

namespace {

NSFont* makeFont(Font font) {
    switch (font) {
    case Font::body: return [NSFont systemFontOfSize:[NSFont systemFontSize]];
    case Font::headline: return [NSFont boldSystemFontOfSize:[NSFont systemFontSize]];
    case Font::caption: return [NSFont systemFontOfSize:[NSFont smallSystemFontSize]];
    case Font::monospaced:
        return [NSFont monospacedSystemFontOfSize:[NSFont systemFontSize] weight:NSFontWeightRegular];
    }
    return nil;
}

/// Made at its first use, kept for good.
template <Font role>
NSFont* cached() {
    static NSFont* const font = [makeFont(role) retain];
    return font;
}

} // namespace

NSFont* Look::font(Font font) {
    switch (font) {
    case Font::body: return cached<Font::body>();
    case Font::headline: return cached<Font::headline>();
    case Font::caption: return cached<Font::caption>();
    case Font::monospaced: return cached<Font::monospaced>();
    }
    return nil;
}

NSColor* Look::color(TextColor color) {
    switch (color) {
    case TextColor::primary: return [NSColor labelColor];
    case TextColor::secondary: return [NSColor secondaryLabelColor];
    case TextColor::red: return [NSColor systemRedColor];
    case TextColor::orange: return [NSColor systemOrangeColor];
    }
    return nil;
}

double Look::centeredBaseline(double height, NSFont* font) {
    return std::round((height + [font ascender] + [font descender]) / 2.0);
}

Measured Look::naturalSize(NSView* view) {
    const NSSize size = [view intrinsicContentSize];
    if (NSIsEmptyRect([view frame])) {
        [view setFrameSize:size]; // without one it has no baseline to tell of
    }
    const double baseline = [view firstBaselineOffsetFromTop];
    // Controls without a text of their own have none.
    return {.width = size.width,
            .height = size.height,
            .baseline = baseline > 0.0 ? baseline : centeredBaseline(size.height, font(Font::body))};
}

} // namespace menubar
