#import "compat/gnustep/desktop/MenuPanel.h"

#import "compat/gnustep/desktop/MenuView.h"
#import "compat/gnustep/look/Hint.h"

#import <GNUstepGUI/GSDisplayServer.h>

#include "compat/gnustep/look/Drawing.h"

#include <algorithm>

namespace {

constexpr CGFloat screenMargin = 4.0;
constexpr CGFloat aboveMenu = 26.0; // a menu bar
constexpr CGFloat narrowest = 180.0;
constexpr CGFloat wheelSpeed = 44.0; // points a notch
constexpr NSTimeInterval turn = 0.05;
constexpr NSTimeInterval longestClick = 0.3;
constexpr unichar escape = 0x1B;
constexpr unichar enter = 0x03;

MenuPanel* openPanel = nil; // not owned; set while it tracks

NSTimeInterval now() {
    return [NSDate timeIntervalSinceReferenceDate];
}

} // namespace

@implementation MenuPanel

+ (MenuPanel*)current {
    return openPanel;
}

- (instancetype)initWithMenu:(NSMenu*)menu {
    self = [super init];
    if (self != nil) {
        _menu = menubar::ObjCPointer<NSMenu>::retain(menu);
        const NSRect frame = NSMakeRect(0, 0, narrowest, narrowest);
        _view = menubar::ObjCPointer<MenuView>::adopt([[MenuView alloc] initWithFrame:frame]);
        _window = menubar::Drawing::makeOverlay([NSPanel class], NSPopUpMenuWindowLevel, _view.get()); // takes keys
        NSNotificationCenter* center = [NSNotificationCenter defaultCenter];
        for (NSString* name in
             @[ NSMenuDidAddItemNotification, NSMenuDidChangeItemNotification, NSMenuDidRemoveItemNotification ]) {
            [center addObserver:self selector:@selector(menuChanged:) name:name object:menu];
        }
    }
    return self;
}

- (void)dealloc {
    [[NSNotificationCenter defaultCenter] removeObserver:self];
    [super dealloc];
}

- (void)cancel {
    _isDone = YES; // seen within a turn
}

- (NSMenu*)menu {
    return _menu.get();
}

- (NSWindow*)window {
    return _window.get();
}

- (MenuView*)view {
    return _view.get();
}

- (void)menuChanged:(NSNotification*)notification {
    _isStale = YES;
}

/// Below the strip and flush with its left edge, moved to the left and up as far as the screen asks for.
- (void)layout {
    _isStale = NO;
    [_view.get() setItems:[_menu.get() itemArray]];
    const NSRect screen = [[NSScreen mainScreen] frame];
    const NSSize natural = [_view.get() naturalSize];
    const CGFloat width = std::clamp(natural.width, narrowest, std::max(narrowest, NSWidth(screen) - 2 * screenMargin));
    const CGFloat lowest = NSMinY(screen) + screenMargin;
    const CGFloat height = std::min(natural.height, NSHeight(screen) - aboveMenu - screenMargin);
    const CGFloat rightmost = NSMaxX(screen) - screenMargin - width;
    const CGFloat x = std::max(NSMinX(screen), std::min(NSMinX(_strip), rightmost));
    const NSRect frame = NSMakeRect(x, std::max(NSMinY(_strip) - height, lowest), width, height);
    if (!NSEqualRects(frame, [_window.get() frame])) {
        [_window.get() setFrame:frame display:NO];
    }
    [_view.get() setItems:[_menu.get() itemArray]]; // the scroll position depends on the height
}

- (NSMenuItem*)trackBelow:(NSRect)strip from:(NSInteger)index pressedBy:(NSEvent*)press {
    _strip = strip;
    _isDone = NO;
    _pressedAt = press != nil ? now() : 0.0;
    _mouse = [NSEvent mouseLocation];
    const auto keyBefore = menubar::ObjCPointer<NSWindow>::retain([NSApp keyWindow]);
    openPanel = self;
    [self layout];
    [_view.get() scrollToItem:index];
    [_view.get() setHighlighted:index];
    [_window.get() makeKeyAndOrderFront:nil];
    [_view.get() display];
    [GSServerForWindow(_window.get()) capturemouse:static_cast<int>([_window.get() windowNumber])];
    while (!_isDone) {
        @autoreleasepool {
            [self runTurn];
        }
    }
    openPanel = nil;
    [GSServerForWindow(_window.get()) releasemouse];
    [[Hint shared] hide];
    [_window.get() orderOut:nil];
    [keyBefore.get() makeKeyWindow];
    return [[_chosen.get() retain] autorelease];
}

- (void)runTurn {
    NSEvent* event = [NSApp nextEventMatchingMask:NSEventMaskAny
                                        untilDate:[NSDate dateWithTimeIntervalSinceNow:turn]
                                           inMode:NSEventTrackingRunLoopMode
                                          dequeue:YES];
    if (event != nil) {
        [self handle:event];
    }
    if (_isDone) {
        return;
    }
    if (_isStale) {
        [self layout];
    }
    [_view.get() displayIfNeeded];
    [_window.get() flushWindow];
}

- (void)handle:(NSEvent*)event {
    constexpr NSUInteger moved =
        NSMouseMovedMask | NSLeftMouseDraggedMask | NSRightMouseDraggedMask | NSOtherMouseDraggedMask;
    constexpr NSUInteger pressed = NSLeftMouseDownMask | NSRightMouseDownMask | NSOtherMouseDownMask;
    constexpr NSUInteger released = NSLeftMouseUpMask | NSRightMouseUpMask | NSOtherMouseUpMask;
    const NSUInteger kind = NSEventMaskFromType([event type]);
    if ((kind & (moved | pressed | released)) != 0) {
        [self noteMouse:event];
        [self highlightUnderMouse];
        if ((kind & pressed) != 0 && ![self isMouseInside]) {
            _isDone = YES;
        } else if ((kind & released) != 0) {
            [self mouseUp];
        }
    } else if (kind == NSScrollWheelMask) {
        [_view.get() scrollBy:-wheelSpeed * [event deltaY]];
        [self highlightUnderMouse];
    } else if (kind == NSKeyDownMask) {
        [self keyDown:event];
    } else {
        [NSApp sendEvent:event]; // what the windows need to live: exposure, focus
    }
}

- (void)noteMouse:(NSEvent*)event {
    NSWindow* window = [event window];
    const NSPoint place = [event locationInWindow];
    _mouse = window != nil ? [window convertBaseToScreen:place] : place;
}

- (NSPoint)mouseInView {
    return [_view.get() convertPoint:[_window.get() convertScreenToBase:_mouse] fromView:nil];
}

- (BOOL)isMouseInside {
    return NSPointInRect([self mouseInView], [_view.get() bounds]);
}

- (void)highlightUnderMouse {
    const NSInteger row = [_view.get() indexAtPoint:[self mouseInView]];
    [_view.get() setHighlighted:row];
    // Also of one that cannot be chosen.
    [[Hint shared] pointAt:self
                      area:[_view.get() convertRect:[_view.get() rectOfItem:row] toView:nil]
                        of:_window.get()
                      text:[[_view.get() itemAtIndex:row] toolTip]];
}

- (void)mouseUp {
    const bool endsClick = _pressedAt != 0.0 && now() - _pressedAt < longestClick;
    const bool endsPress = _pressedAt != 0.0;
    _pressedAt = 0.0;
    if ([self isMouseInside]) {
        if (!endsClick) {
            [self chooseHighlighted];
        }
    } else if (endsPress && !endsClick && !NSPointInRect(_mouse, _strip)) {
        _isDone = YES;
    }
}

- (void)chooseHighlighted {
    NSMenuItem* item = [_view.get() itemAtIndex:[_view.get() highlighted]];
    if (item != nil) {
        _chosen = menubar::ObjCPointer<NSMenuItem>::retain(item);
        _isDone = YES;
    }
}

- (void)keyDown:(NSEvent*)event {
    NSString* characters = [event charactersIgnoringModifiers];
    if ([characters length] == 0) {
        return;
    }
    if (([event modifierFlags] & NSEventModifierFlagCommand) != 0) {
        [self chooseKeyEquivalent:characters];
        return;
    }
    const NSInteger highlighted = [_view.get() highlighted];
    const auto count = static_cast<NSInteger>([_view.get() numberOfItems]);
    const unichar key = [characters characterAtIndex:0];
    if (key == NSDownArrowFunctionKey) {
        [_view.get() moveHighlightFrom:highlighted step:1];
    } else if (key == NSUpArrowFunctionKey) {
        [_view.get() moveHighlightFrom:highlighted == [MenuView none] ? count : highlighted step:-1];
    } else if (key == NSHomeFunctionKey) {
        [_view.get() moveHighlightFrom:-1 step:1];
    } else if (key == NSEndFunctionKey) {
        [_view.get() moveHighlightFrom:count step:-1];
    } else if (key == '\r' || key == enter || key == ' ') {
        [self chooseHighlighted];
    } else if (key == escape) {
        _isDone = YES;
    }
}

- (void)chooseKeyEquivalent:(NSString*)characters {
    const auto count = static_cast<NSInteger>([_view.get() numberOfItems]);
    for (NSInteger index = 0; index < count; ++index) {
        if ([_view.get() isSelectable:index] &&
            [[[_view.get() itemAtIndex:index] keyEquivalent] isEqualToString:characters]) {
            [_view.get() setHighlighted:index];
            [self chooseHighlighted];
            return;
        }
    }
}

@end

@implementation NSMenu (MenubarShim)

- (void)cancelTracking {
    if ([openPanel menu] == self) {
        [openPanel cancel];
    }
}

@end
