#import "compat/gnustep/desktop/StatusStripItem.h"

#import "compat/gnustep/desktop/MenuPanel.h"
#import "compat/gnustep/look/Hint.h"
#import "compat/gnustep/look/SymbolImage.h"

#include "compat/gnustep/look/Drawing.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr CGFloat height = 26.0;
constexpr CGFloat margin = 8.0;   // to the right edge of the screen
constexpr CGFloat padding = 10.0; // inside, left and right
constexpr CGFloat symbolSide = 18.0;

} // namespace

@implementation StatusStripButton

- (instancetype)initWithItem:(StatusStripItem*)item {
    self = [super initWithFrame:NSMakeRect(0, 0, height, height)];
    if (self != nil) {
        _item = item;
        [self setTitle:@""];
        [self setBordered:NO];
    }
    return self;
}

- (void)forgetItem {
    _item = nil;
    [[Hint shared] hide];
}

- (NSUInteger)changes {
    return _changes;
}

- (void)changed {
    ++_changes;
    [_item layout];
}

- (void)setImage:(NSImage*)image {
    [super setImage:image];
    [self changed];
}

- (void)setAttributedTitle:(NSAttributedString*)title {
    [super setAttributedTitle:title];
    [self changed];
}

- (NSColor*)contentTintColor {
    return _tint.get();
}

- (void)setContentTintColor:(NSColor*)color {
    _tint = menubar::ObjCPointer<NSColor>::retain(color);
    [self changed];
}

- (void)setToolTip:(NSString*)text {
    ++_changes;
    [super setToolTip:text];
    [[Hint shared] setText:text ofOwner:self];
}

- (NSString*)accessibilityLabel {
    return _label.get();
}

- (void)setAccessibilityLabel:(NSString*)label {
    _label = menubar::ObjCPointer<NSString>::adopt([label copy]);
}

- (BOOL)showsTitle {
    return [self imagePosition] != NSImageOnly && [[self attributedTitle] length] > 0;
}

- (CGFloat)contentWidth {
    const CGFloat title = [self showsTitle] ? std::ceil([[self attributedTitle] size].width) : 0.0;
    return 2 * padding + symbolSide + title;
}

- (void)drawRect:(NSRect)dirty {
    const NSRect bounds = [self bounds];
    [([_item isOpen] ? menubar::Palette::pressed : menubar::Palette::surface)() set];
    NSRectFill(bounds);
    [menubar::Palette::border() set];
    NSFrameRect(bounds);
    const NSRect place = NSMakeRect(padding, std::floor((NSHeight(bounds) - symbolSide) / 2), symbolSide, symbolSide);
    // Not in the tint: a menu bar draws an image that has no colour of its own black, whatever the tint.
    SymbolImage* symbol = static_cast<SymbolImage*>([self image]);
    [symbol drawInRect:place
                  tint:[symbol ownColor] != nil ? [symbol ownColor] : menubar::Palette::text()
               flipped:[self isFlipped]];
    if ([self showsTitle]) {
        NSAttributedString* title = [self attributedTitle];
        const CGFloat y = std::floor((NSHeight(bounds) - [title size].height) / 2);
        [title drawAtPoint:NSMakePoint(padding + symbolSide, y)];
    }
}

/// Not NSButton's, whose tracking would wait for a mouse-up that the menu takes.
- (void)mouseDown:(NSEvent*)event {
    [[Hint shared] hide];
    [_item openMenuWithEvent:event];
}

- (void)rightMouseDown:(NSEvent*)event {
    [self mouseDown:event];
}

- (void)performClick:(id)sender {
    [_item openMenuWithEvent:nil];
}

- (void)mouseMoved:(NSEvent*)event {
    [[Hint shared] pointAt:self area:[self bounds] of:[self window] text:[self toolTip]];
}

@end

@implementation StatusStripItem

- (instancetype)init {
    self = [super init];
    if (self != nil) {
        _room = NSWidth([[NSScreen mainScreen] frame]);
        _button = menubar::ObjCPointer<StatusStripButton>::adopt([[StatusStripButton alloc] initWithItem:self]);
        _window = menubar::Drawing::makeOverlay([NSWindow class], NSStatusWindowLevel, _button.get());
        [_window.get() setHidesOnDeactivate:NO];
        [self layout];
        [_window.get() orderFrontRegardless];
    }
    return self;
}

- (void)dealloc {
    [_button.get() forgetItem];
    [_window.get() orderOut:nil];
    [super dealloc];
}

- (NSStatusBarButton*)button {
    return _button.get();
}

- (NSWindow*)window {
    return _window.get();
}

- (NSMenu*)menu {
    return _stripMenu.get();
}

- (void)setMenu:(NSMenu*)menu {
    _stripMenu = menubar::ObjCPointer<NSMenu>::retain(menu);
}

- (NSString*)autosaveName {
    return _autosaveName.get();
}

- (void)setAutosaveName:(NSString*)name {
    _autosaveName = menubar::ObjCPointer<NSString>::adopt([name copy]);
}

- (void)setRoom:(CGFloat)room {
    _room = room;
    [self layout];
}

- (BOOL)isOpen {
    return _isOpen;
}

- (BOOL)isOnScreen {
    return [_window.get() isVisible] && NSContainsRect([[NSScreen mainScreen] frame], [_window.get() frame]);
}

- (void)layout {
    const NSRect screen = [[NSScreen mainScreen] frame];
    const CGFloat width = [_button.get() contentWidth];
    const CGFloat left = NSMaxX(screen) - margin - width;
    const bool fits = width + margin <= std::min(_room, NSWidth(screen));
    const NSRect frame = NSMakeRect(fits ? left : NSMaxX(screen) + margin, NSMaxY(screen) - height, width, height);
    if (!NSEqualRects(frame, [_window.get() frame])) {
        [_window.get() setFrame:frame display:YES];
    }
}

- (void)openMenuWithEvent:(NSEvent*)event {
    if (_isOpen || !_stripMenu) {
        return;
    }
    const auto keepAlive = menubar::ObjCPointer<StatusStripItem>::retain(self);
    const auto menu = _stripMenu;
    id<NSMenuDelegate> delegate = [menu.get() delegate];
    const auto tell = [delegate, &menu](SEL message) {
        if ([delegate respondsToSelector:message]) {
            [delegate performSelector:message withObject:menu.get()];
        }
    };
    tell(@selector(menuNeedsUpdate:));
    tell(@selector(menuWillOpen:));
    _isOpen = YES;
    [_button.get() display];
    const auto panel = menubar::ObjCPointer<MenuPanel>::adopt([[MenuPanel alloc] initWithMenu:menu.get()]);
    const auto chosen = menubar::ObjCPointer<NSMenuItem>::retain([panel.get() trackBelow:[_window.get() frame]
                                                                                    from:-1
                                                                               pressedBy:event]);
    _isOpen = NO;
    [_button.get() display];
    tell(@selector(menuDidClose:));
    if (chosen) {
        [NSApp sendAction:[chosen.get() action] to:[chosen.get() target] from:chosen.get()];
    }
}

@end
