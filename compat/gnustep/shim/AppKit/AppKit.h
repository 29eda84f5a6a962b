#pragma once

// Stands in front of GNUstep's AppKit.h: what the shared sources use of macOS's AppKit and GNUstep does not have. Each
// method is implemented beside this folder; where that is only for one class, the comment says which.
#include_next <AppKit/AppKit.h>

constexpr NSCellImagePosition NSImageLeading = NSImageLeft;

constexpr NSEventType NSEventTypeLeftMouseDown = NSLeftMouseDown;
constexpr NSEventType NSEventTypeLeftMouseUp = NSLeftMouseUp;
constexpr NSEventType NSEventTypeMouseMoved = NSMouseMoved;
constexpr NSEventType NSEventTypeKeyDown = NSKeyDown;
constexpr NSEventType NSEventTypeKeyUp = NSKeyUp;
constexpr NSEventType NSEventTypeApplicationDefined = NSApplicationDefined;
constexpr NSEventMask NSEventMaskAny = NSAnyEventMask;
constexpr NSEventModifierFlags NSEventModifierFlagOption = NSAlternateKeyMask;
constexpr NSEventModifierFlags NSEventModifierFlagCommand = NSCommandKeyMask;
constexpr NSEventModifierFlags NSEventModifierFlagShift = NSShiftKeyMask;
constexpr NSEventMask NSEventMaskKeyUp = NSKeyUpMask;
constexpr NSButtonType NSButtonTypeMomentaryPushIn = NSMomentaryPushInButton;
constexpr NSButtonType NSButtonTypeSwitch = NSSwitchButton;
constexpr NSProgressIndicatorStyle NSProgressIndicatorStyleSpinning = NSProgressIndicatorSpinningStyle;
constexpr NSBitmapImageFileType NSBitmapImageFileTypePNG = NSPNGFileType;
constexpr NSCompositingOperation NSCompositingOperationSourceOver = NSCompositeSourceOver;

@interface NSApplication (MenubarShim)
/// There is no Dock: ignored.
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
@end

@interface NSColor (MenubarShim)
+ (NSColor*)separatorColor;
@end

@interface NSFont (MenubarShim)
+ (NSFont*)monospacedSystemFontOfSize:(CGFloat)size weight:(CGFloat)weight;
/// The system font in the nearest of its two weights; the digits of Debian's fonts are all of one width.
+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(CGFloat)weight;
@end

// Implemented for the app's own drawings of the system's symbols.
@interface NSImage (MenubarShim)
- (NSString*)accessibilityDescription;
- (BOOL)isTemplate;
@end

// Implemented for the views that NativeLook::newSymbolView() gives.
@interface NSImageView (MenubarShim)
- (NSColor*)contentTintColor;
- (void)setContentTintColor:(NSColor*)color;
@end

/// How large a control wants to be, and where its text stands.
@interface NSView (MenubarShim)
- (NSSize)intrinsicContentSize;
/// 0: nobody says.
- (CGFloat)firstBaselineOffsetFromTop;
/// The rectangles are the same but for labels, whose frame reaches beyond their text.
- (NSRect)frameForAlignmentRect:(NSRect)rect;
- (NSRect)alignmentRectForFrame:(NSRect)frame;
- (NSTextInputContext*)inputContext;
@end

@interface NSTextField (MenubarShim)
- (void)setPlaceholderString:(NSString*)text;
- (void)setMaximumNumberOfLines:(NSInteger)lines;
@end

@interface NSCell (MenubarShim)
- (void)setTruncatesLastVisibleLine:(BOOL)truncates; // of labels, which always do
@end

@interface NSTextView (MenubarShim)
/// There is no coalescing to break.
- (void)breakUndoCoalescing;
@end

@interface NSMenu (MenubarShim)
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
