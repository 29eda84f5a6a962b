#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/ObjCPointer.h"

#include <vector>

/// Draws the items of a menu: check marks, indentation, key equivalents, separators and one highlighted item. Items
/// beyond its height are scrolled to. Flipped. Main thread.
@interface MenuView : NSView {
    menubar::ObjCPointer<NSArray> _items;
    std::vector<CGFloat> _tops; // of each row, in the unscrolled content; one more for the end
    CGFloat _naturalWidth;
    CGFloat _scroll;
    NSInteger _highlighted;
}

/// No item.
+ (NSInteger)none;

/// Takes the items as they are now. The highlight stays in its item, wherever that is.
- (void)setItems:(NSArray*)items;
- (NSUInteger)numberOfItems;
- (NSMenuItem*)itemAtIndex:(NSInteger)index;

/// What shows every item whole.
- (NSSize)naturalSize;

/// An item that can be chosen: enabled, and no separator.
- (BOOL)isSelectable:(NSInteger)index;
- (NSInteger)highlighted;
/// Anything that is not selectable counts as none.
- (void)setHighlighted:(NSInteger)index;
/// To the next selectable item after `index` (before it for a step of -1), which is brought into sight; to `index`
/// itself where there is none.
- (void)moveHighlightFrom:(NSInteger)index step:(NSInteger)step;

/// The item at a point of this view, whether selectable or not.
- (NSInteger)indexAtPoint:(NSPoint)point;
/// Where an item is drawn now, perhaps outside the view.
- (NSRect)rectOfItem:(NSInteger)index;

- (void)scrollBy:(CGFloat)distance;
- (void)scrollToItem:(NSInteger)index;

@end
