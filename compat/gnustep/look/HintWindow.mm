#import "compat/gnustep/look/HintWindow.h"

#include "compat/gnustep/look/Palette.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr CGFloat padding = 6.0;
constexpr CGFloat widest = 460.0;

} // namespace

@interface HintView : NSView {
    menubar::ObjCPointer<NSAttributedString> _text;
}
- (void)setText:(NSAttributedString*)text;
@end

@implementation HintView

- (void)setText:(NSAttributedString*)text {
    _text = menubar::ObjCPointer<NSAttributedString>::retain(text);
    [self setNeedsDisplay:YES];
}

- (void)drawRect:(NSRect)dirty {
    [menubar::Palette::hintSurface() set];
    NSRectFill([self bounds]);
    [menubar::Palette::border() set];
    NSFrameRect([self bounds]);
    [_text.get() drawInRect:NSInsetRect([self bounds], padding, padding)];
}

@end

@implementation HintWindow

- (instancetype)init {
    self = [super init];
    if (self != nil) {
        NSWindow* window = [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, 10, 10)
                                                       styleMask:NSBorderlessWindowMask
                                                         backing:NSBackingStoreBuffered
                                                           defer:NO];
        [window setReleasedWhenClosed:NO];
        [window setLevel:NSScreenSaverWindowLevel];
        [window setContentView:[[[HintView alloc] initWithFrame:NSMakeRect(0, 0, 10, 10)] autorelease]];
        _window = menubar::ObjCPointer<NSWindow>::adopt(window);
    }
    return self;
}

- (void)dealloc {
    [_window.get() orderOut:nil];
    [super dealloc];
}

- (void)show:(NSString*)text at:(NSPoint)corner {
    const NSRect screen = [[NSScreen mainScreen] frame];
    NSDictionary* attributes = @{
        NSFontAttributeName : [NSFont systemFontOfSize:menubar::Palette::hintFontSize],
        NSForegroundColorAttributeName : menubar::Palette::text()
    };
    NSAttributedString* string = [[[NSAttributedString alloc] initWithString:text attributes:attributes] autorelease];
    const CGFloat limit = std::min(widest, NSWidth(screen) - 2 * padding);
    const NSSize size = [string boundingRectWithSize:NSMakeSize(limit, NSHeight(screen) / 2)
                                             options:NSStringDrawingUsesLineFragmentOrigin]
                            .size;
    const CGFloat width = std::ceil(std::min(size.width + 4, limit)) + 2 * padding;
    const CGFloat height = std::ceil(std::min(size.height, NSHeight(screen) / 2)) + 2 * padding;
    const CGFloat x = std::clamp(corner.x, NSMinX(screen), std::max(NSMinX(screen), NSMaxX(screen) - width));
    const CGFloat y = std::max(corner.y - height, NSMinY(screen));
    _text = menubar::ObjCPointer<NSString>::adopt([text copy]);
    [static_cast<HintView*>([_window.get() contentView]) setText:string];
    [_window.get() setFrame:NSMakeRect(x, y, width, height) display:YES];
    [_window.get() orderFrontRegardless];
    [_window.get() display]; // what was drawn before it was on screen is lost
}

- (void)hide {
    if (_text) {
        _text = {};
        [_window.get() orderOut:nil];
    }
}

- (NSString*)text {
    return _text.get();
}

- (NSWindow*)window {
    return _window.get();
}

@end
