#pragma once

// Stands in front of GNUstep's AppKit.h: what the shared sources use of macOS's AppKit and GNUstep does not have. Each
// method is implemented beside this folder; where that is only for one class, the comment says which.
#include_next <AppKit/AppKit.h>

constexpr NSCellImagePosition NSImageLeading = NSImageLeft;

constexpr NSEventType NSEventTypeLeftMouseDown = NSLeftMouseDown;
constexpr NSEventType NSEventTypeLeftMouseUp = NSLeftMouseUp;
constexpr NSEventType NSEventTypeMouseMoved = NSMouseMoved;
constexpr NSEventType NSEventTypeKeyDown = NSKeyDown;
constexpr NSEventType NSEventTypeApplicationDefined = NSApplicationDefined;
constexpr NSEventMask NSEventMaskAny = NSAnyEventMask;
constexpr NSEventModifierFlags NSEventModifierFlagOption = NSAlternateKeyMask;
constexpr NSEventModifierFlags NSEventModifierFlagCommand = NSCommandKeyMask;
constexpr NSEventModifierFlags NSEventModifierFlagShift = NSShiftKeyMask;

@interface NSApplication (MenubarShim)
/// There is no Dock: recorded, and nothing else.
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
- (NSApplicationActivationPolicy)activationPolicy;
@end

@interface NSFont (MenubarShim)
/// The system font in the nearest of its two weights; the digits of Debian's fonts are all of one width.
+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(CGFloat)weight;
@end

@interface NSImage (MenubarShim)
/// The app's own drawings for "eye", "eye.trianglebadge.exclamationmark" and "eye.slash"; nil for any other name.
+ (NSImage*)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)description;
@end

// Implemented for those drawings.
@interface NSImage (MenubarSymbol)
- (NSString*)accessibilityDescription;
- (BOOL)isTemplate;
- (void)setTemplate:(BOOL)isTemplate;
@end

@interface NSMenu (MenubarShim)
/// Replaces all items at once: whoever looks sees the old ones or the new ones.
- (void)setItemArray:(NSArray*)items;
/// Dismisses the status item's menu, if that is open.
- (void)cancelTracking;
@end

@interface NSTimer (MenubarShim)
/// GNUstep's timers are never late on purpose: ignored.
- (void)setTolerance:(NSTimeInterval)tolerance;
@end

// Implemented for the status item's button.
@interface NSStatusBarButton (MenubarShim)
- (NSColor*)contentTintColor;
- (void)setContentTintColor:(NSColor*)color;
- (NSString*)accessibilityLabel;
- (void)setAccessibilityLabel:(NSString*)label;
@end

// Implemented for the status item that Desktop::makeStatusItem() gives.
@interface NSStatusItem (MenubarShim)
- (NSStatusBarButton*)button;
- (NSString*)autosaveName;
- (void)setAutosaveName:(NSString*)name;
@end
