#import "compat/gnustep/look/Hint.h"

#import "compat/gnustep/look/Controls.h"
#import "compat/gnustep/shim/SheetWindow.h"

#include "compat/gnustep/look/Drawing.h"

#include <algorithm>

namespace {

constexpr CGFloat padding = 4.0;
constexpr CGFloat widest = 460.0;
constexpr CGFloat below = 18.0; // the pointer
constexpr NSTimeInterval turn = 0.1;
constexpr NSTimeInterval delay = 0.7;

} // namespace

@implementation Hint

+ (Hint*)shared {
    static Hint* const hint = [[Hint alloc] init];
    return hint;
}

- (instancetype)init {
    self = [super init];
    if (self != nil) {
        NSTextField* label = [[NSTextField alloc] initWithFrame:NSMakeRect(0, 0, 10, 10)];
        [label setCell:[[[LabelCell alloc] initTextCell:@""] autorelease]];
        [label setFont:[NSFont systemFontOfSize:[NSFont smallSystemFontSize]]];
        _label = menubar::ObjCPointer<NSTextField>::adopt(label);
        NSView* content = [[[NSView alloc] initWithFrame:[label frame]] autorelease];
        [content addSubview:label];
        _window = menubar::Drawing::makeOverlay([NSWindow class], NSScreenSaverWindowLevel, content);
        [_window.get() setBackgroundColor:menubar::Palette::hintSurface()];
    }
    return self;
}

- (void)pointAt:(id)owner area:(NSRect)area of:(NSWindow*)window text:(NSString*)text {
    if (owner != _owner || !NSEqualRects(area, _area)) {
        [self hide];
        _owner = owner;
        _place = menubar::ObjCPointer<NSWindow>::retain(window);
        _area = area;
        _restingSince = [NSDate timeIntervalSinceReferenceDate];
    }
    _pointer = [NSEvent mouseLocation];
    [self setText:text ofOwner:owner];
}

- (void)setText:(NSString*)text ofOwner:(id)owner {
    if (owner != _owner || [text isEqualToString:_text.get()]) {
        return;
    }
    _text = menubar::ObjCPointer<NSString>::adopt([text copy]);
    if ([_window.get() isVisible]) {
        [self show];
    } else if ([text length] > 0 && !_timer) {
        NSTimer* timer = [NSTimer timerWithTimeInterval:turn
                                                 target:self
                                               selector:@selector(look)
                                               userInfo:nil
                                                repeats:YES];
        for (NSString* mode in @[ NSDefaultRunLoopMode, NSEventTrackingRunLoopMode, NSModalPanelRunLoopMode ]) {
            [[NSRunLoop mainRunLoop] addTimer:timer forMode:mode];
        }
        _timer = menubar::ObjCPointer<NSTimer>::retain(timer);
    }
}

/// Nobody says that the pointer has left a window, or that the window has gone.
- (void)look {
    const NSPoint pointer = [NSEvent mouseLocation];
    const bool isElsewhere =
        !NSEqualPoints(pointer, _pointer) && !NSPointInRect([_place.get() convertScreenToBase:pointer], _area);
    if (isElsewhere || ![_place.get() isVisible] || [NSEvent pressedMouseButtons] != 0) {
        [self hide];
    } else if (![_window.get() isVisible] && [NSDate timeIntervalSinceReferenceDate] - _restingSince >= delay) {
        [self show];
    }
}

- (void)show {
    if ([_text.get() length] == 0) {
        [_window.get() orderOut:nil];
        return;
    }
    const NSRect screen = [[NSScreen mainScreen] frame];
    [_label.get() setStringValue:_text.get()];
    NSSize size = [[_label.get() cell] cellSizeForBounds:NSMakeRect(0, 0, std::min(widest, NSWidth(screen) / 2), 1e6)];
    size.height = std::min(size.height, NSHeight(screen) / 2);
    const NSSize outer = NSMakeSize(size.width + 2 * padding, size.height + 2 * padding);
    const CGFloat x = std::clamp(_pointer.x, NSMinX(screen), NSMaxX(screen) - outer.width);
    const CGFloat y = std::max(_pointer.y - below - outer.height, NSMinY(screen));
    [_label.get() setFrame:NSMakeRect(padding, padding, size.width, size.height)];
    [_window.get() setFrame:NSMakeRect(x, y, outer.width, outer.height) display:YES];
    [_window.get() orderFrontRegardless];
    [_window.get() display]; // what was drawn before it was on screen is lost
}

- (void)hide {
    [_timer.get() invalidate];
    _timer = {};
    _text = {};
    _place = {};
    _owner = nil;
    [_window.get() orderOut:nil];
}

- (NSString*)text {
    return [_window.get() isVisible] ? _text.get() : nil;
}

@end

/// The tooltips of the views in a window that says where the pointer is.
@implementation SheetWindow (Hints)

- (void)mouseMoved:(NSEvent*)event {
    NSView* view = [[[self contentView] superview] hitTest:[event locationInWindow]];
    while (view != nil && [[view toolTip] length] == 0) {
        view = [view superview];
    }
    const NSRect area = [view convertRect:[view visibleRect] toView:nil];
    [[Hint shared] pointAt:view area:area of:self text:[view toolTip]];
}

/// A press ends it at once: the view may be gone by the next look.
- (void)sendEvent:(NSEvent*)event {
    if ([event type] == NSEventTypeLeftMouseDown) {
        [[Hint shared] hide];
    }
    [super sendEvent:event];
}

@end

@interface GSToolTips : NSObject
@end

/// GNUstep's own would come too, where a view was once.
@implementation GSToolTips (MenubarOverride)

- (void)mouseEntered:(NSEvent*)event {
}

@end
