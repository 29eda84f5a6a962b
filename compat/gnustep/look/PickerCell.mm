#import "compat/gnustep/look/PickerCell.h"

#include "compat/gnustep/look/Drawing.h"
#include "compat/gnustep/look/Palette.h"

#include <algorithm>
#include <cmath>

namespace {

namespace Drawing = menubar::Drawing;
namespace Palette = menubar::Palette;

constexpr CGFloat leading = 10.0;
constexpr CGFloat trailing = 26.0; // for the arrows
constexpr CGFloat height = 24.0;

} // namespace

@implementation PickerCell

- (NSSize)cellSize {
    double widest = 0.0;
    for (NSMenuItem* item in [self itemArray]) {
        widest = std::max(widest, Drawing::lineWidth([item title], [self font]));
    }
    return NSMakeSize(std::ceil(widest) + leading + trailing, height);
}

- (void)drawWithFrame:(NSRect)frame inView:(NSView*)view {
    const bool isEnabled = [self isEnabled];
    NSColor* color = isEnabled ? Palette::text() : Palette::disabledText();
    Drawing::drawBezel(frame, isEnabled ? Palette::control() : Palette::disabledControl(), Palette::border(),
                       Drawing::focusOf(view), Palette::controlRadius);
    const NSInteger selected = [self indexOfSelectedItem];
    if (selected >= 0) {
        Drawing::drawLine(
            [self itemTitleAtIndex:selected],
            NSMakeRect(NSMinX(frame) + leading, NSMinY(frame), NSWidth(frame) - leading - trailing, NSHeight(frame)),
            [self font], color);
    }
    const CGFloat x = NSMaxX(frame) - trailing / 2;
    const CGFloat y = NSMidY(frame);
    for (const CGFloat side : {-1.0, 1.0}) {
        const NSPoint arrow[] = {{x - 3.0, y + side * 2.5}, {x, y + side * 5.5}, {x + 3.0, y + side * 2.5}};
        Drawing::strokeLines(arrow, 3, 1.5, color);
    }
}

@end
