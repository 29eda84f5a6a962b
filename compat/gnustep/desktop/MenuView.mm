#import "compat/gnustep/desktop/MenuView.h"

#include "compat/gnustep/look/Drawing.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

namespace Drawing = menubar::Drawing;
namespace Palette = menubar::Palette;

constexpr CGFloat rowHeight = 22.0;
constexpr CGFloat separatorHeight = 11.0;
constexpr CGFloat edge = 5.0;        // above the first row, below the last, and beside the highlight
constexpr CGFloat checkLeft = 11.0;  // of the check mark
constexpr CGFloat titleLeft = 26.0;  // of an item that is not indented
constexpr CGFloat indent = 11.0;     // per level
constexpr CGFloat keyGap = 24.0;     // between title and key equivalent
constexpr CGFloat titleRight = 18.0; // to the right edge
constexpr NSInteger noItem = -1;
constexpr std::size_t measuredTitles = 200; // measuring costs; the widest is among the longest

NSFont* menuFont() {
    return [NSFont menuFontOfSize:13.0];
}

CGFloat widthOf(NSString* text) {
    return std::ceil(Drawing::lineWidth(text, menuFont()));
}

NSString* keyText(NSMenuItem* item) {
    NSString* key = [item keyEquivalent];
    return [key length] == 0 ? @"" : [@"⌘" stringByAppendingString:[key uppercaseString]];
}

CGFloat leftOf(NSMenuItem* item) {
    return titleLeft + indent * static_cast<CGFloat>([item indentationLevel]);
}

CGFloat widthOfRow(NSMenuItem* item) {
    NSString* key = keyText(item);
    const CGFloat keyWidth = [key length] > 0 ? keyGap + widthOf(key) : 0.0;
    return leftOf(item) + widthOf([item title]) + keyWidth + titleRight;
}

CGFloat widthOfRows(NSArray* items) {
    std::vector<NSMenuItem*> rows;
    for (NSMenuItem* item in items) {
        rows.push_back(item);
    }
    std::ranges::sort(rows, std::ranges::greater{}, [](NSMenuItem* item) { return [[item title] length]; });
    rows.resize(std::min(rows.size(), measuredTitles));
    CGFloat widest = 0.0;
    for (NSMenuItem* item : rows) {
        widest = std::max(widest, widthOfRow(item));
    }
    return widest;
}

} // namespace

@implementation MenuView

+ (NSInteger)none {
    return noItem;
}

- (instancetype)initWithFrame:(NSRect)frame {
    self = [super initWithFrame:frame];
    if (self != nil) {
        _tops = {edge, edge};
        _highlighted = noItem;
    }
    return self;
}

- (BOOL)isFlipped {
    return YES;
}

- (void)setItems:(NSArray*)items {
    NSMenuItem* before = [self itemAtIndex:_highlighted];
    _items = menubar::ObjCPointer<NSArray>::adopt([items copy]);
    _tops.assign(1, edge);
    for (NSMenuItem* item in items) {
        _tops.push_back(_tops.back() + ([item isSeparatorItem] ? separatorHeight : rowHeight));
    }
    _naturalWidth = widthOfRows(items);
    const NSUInteger now = before == nil ? NSNotFound : [items indexOfObjectIdenticalTo:before];
    [self setHighlighted:now == NSNotFound ? noItem : static_cast<NSInteger>(now)];
    [self scrollBy:0];
    [self setNeedsDisplay:YES];
}

- (NSUInteger)numberOfItems {
    return [_items.get() count];
}

- (NSMenuItem*)itemAtIndex:(NSInteger)index {
    const bool exists = index >= 0 && static_cast<NSUInteger>(index) < [self numberOfItems];
    return exists ? [_items.get() objectAtIndex:static_cast<NSUInteger>(index)] : nil;
}

- (NSSize)naturalSize {
    return NSMakeSize(_naturalWidth, _tops.back() + edge);
}

- (BOOL)isSelectable:(NSInteger)index {
    NSMenuItem* item = [self itemAtIndex:index];
    return item != nil && ![item isSeparatorItem] && [item isEnabled];
}

- (NSInteger)highlighted {
    return _highlighted;
}

- (void)setHighlighted:(NSInteger)index {
    const NSInteger wanted = [self isSelectable:index] ? index : noItem;
    if (wanted == _highlighted) {
        return;
    }
    [self setNeedsDisplayInRect:[self rectOfItem:_highlighted]];
    _highlighted = wanted;
    [self setNeedsDisplayInRect:[self rectOfItem:_highlighted]];
}

- (void)moveHighlightFrom:(NSInteger)index step:(NSInteger)step {
    NSInteger next = index + step;
    while ([self itemAtIndex:next] != nil && ![self isSelectable:next]) {
        next += step;
    }
    [self setHighlighted:[self isSelectable:next] ? next : index];
    [self scrollToItem:_highlighted];
}

- (NSInteger)indexAtPoint:(NSPoint)point {
    if (!NSPointInRect(point, [self bounds])) {
        return noItem;
    }
    const auto after = std::ranges::upper_bound(_tops, point.y + _scroll);
    const auto row = after - _tops.begin() - 1;
    return row < static_cast<std::ptrdiff_t>([self numberOfItems]) ? row : noItem;
}

- (NSRect)rectOfItem:(NSInteger)index {
    if ([self itemAtIndex:index] == nil) {
        return NSZeroRect;
    }
    const auto row = static_cast<std::size_t>(index);
    return NSMakeRect(0, _tops[row] - _scroll, NSWidth([self bounds]), _tops[row + 1] - _tops[row]);
}

- (void)scrollBy:(CGFloat)distance {
    const CGFloat hidden = std::max(0.0, [self naturalSize].height - NSHeight([self bounds]));
    const CGFloat wanted = std::clamp(_scroll + distance, 0.0, hidden);
    if (wanted != _scroll) {
        _scroll = wanted;
        [self setNeedsDisplay:YES];
    }
}

- (void)scrollToItem:(NSInteger)index {
    const NSRect row = [self rectOfItem:index];
    [self scrollBy:std::min(0.0, NSMinY(row)) + std::max(0.0, NSMaxY(row) - NSHeight([self bounds]))];
}

- (void)drawItem:(NSMenuItem*)item inRow:(NSRect)row isHighlighted:(BOOL)isHighlighted {
    NSColor* color = isHighlighted      ? Palette::highlightedText()
                     : [item isEnabled] ? Palette::text()
                                        : Palette::disabledText();
    if (isHighlighted) {
        [Palette::highlight() set];
        NSRectFill(NSInsetRect(row, edge, 0));
    }
    if ([item state] == NSControlStateValueOn) {
        const CGFloat y = std::floor(NSMidY(row));
        const NSPoint mark[] = {{checkLeft, y + 0.5}, {checkLeft + 3.2, y + 4.0}, {checkLeft + 8.6, y - 4.5}};
        Drawing::strokeLines(mark, 3, 1.6, color);
    }
    NSRect room = row;
    room.origin.x = leftOf(item);
    room.size.width = NSWidth(row) - titleRight - leftOf(item);
    NSString* key = keyText(item);
    if ([key length] > 0) {
        const CGFloat width = widthOf(key);
        const NSRect place = NSMakeRect(NSMaxX(room) - width, NSMinY(row), width, NSHeight(row));
        Drawing::drawLine(key, place, menuFont(), isHighlighted ? color : Palette::disabledText());
        room.size.width -= width + keyGap;
    }
    Drawing::drawLine([item title], room, menuFont(), color);
}

- (void)drawRect:(NSRect)dirty {
    const NSRect bounds = [self bounds];
    [Palette::surface() set];
    NSRectFill(dirty);
    NSInteger index = -1;
    for (NSMenuItem* item in _items.get()) {
        const NSRect row = [self rectOfItem:++index];
        if (!NSIntersectsRect(row, dirty)) {
            continue;
        }
        if ([item isSeparatorItem]) {
            [Palette::separator() set];
            NSRectFill(NSMakeRect(2 * edge, std::floor(NSMidY(row)), NSWidth(row) - 4 * edge, 1));
        } else {
            [self drawItem:item inRow:row isHighlighted:index == _highlighted];
        }
    }
    [Palette::border() set];
    NSFrameRect(bounds);
}

@end
