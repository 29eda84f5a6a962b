#import "MenubarApp/AppKit/Controls/Look.h"

#include <cmath>

namespace menubar {

NSFont* Look::font(Font font) {
    static NSFont* const body = [[NSFont systemFontOfSize:[NSFont systemFontSize]] retain];
    static NSFont* const headline = [[NSFont boldSystemFontOfSize:[NSFont systemFontSize]] retain];
    static NSFont* const caption = [[NSFont systemFontOfSize:[NSFont smallSystemFontSize]] retain];
    static NSFont* const monospaced = [[NSFont monospacedSystemFontOfSize:[NSFont systemFontSize]
                                                                   weight:NSFontWeightRegular] retain];
    switch (font) {
    case Font::body: return body;
    case Font::headline: return headline;
    case Font::caption: return caption;
    case Font::monospaced: return monospaced;
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
