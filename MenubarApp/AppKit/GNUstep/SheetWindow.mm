#import "MenubarApp/AppKit/GNUstep/SheetWindow.h"

#include <utility>

@implementation SheetWindow

- (void)dealloc {
    [[NSNotificationCenter defaultCenter] removeObserver:self];
    [super dealloc];
}

- (NSView*)sheetView {
    return _sheet.get();
}

- (void)beginSheetView:(NSView*)view {
    [self endSheetView];
    [self rememberResponder];
    NSView* content = [self contentView];
    [view setFrame:[content frame]];
    [[content superview] addSubview:view positioned:NSWindowAbove relativeTo:content];
    _sheet = menubar::ObjCPointer<NSView>::retain(view);
    [self makeFirstResponder:view];
    [[NSNotificationCenter defaultCenter] addObserver:self
                                             selector:@selector(followContent)
                                                 name:NSWindowDidResizeNotification
                                               object:self];
}

/// What holds the content lays out nothing else.
- (void)followContent {
    [_sheet.get() setFrame:[[self contentView] frame]];
}

- (void)endSheetView {
    const auto sheet = std::exchange(_sheet, {});
    if (!sheet) {
        return;
    }
    [[NSNotificationCenter defaultCenter] removeObserver:self name:NSWindowDidResizeNotification object:self];
    [sheet.get() removeFromSuperview];
    [self restoreResponder];
    [[[self contentView] superview] setNeedsDisplay:YES];
}

/// The field editor belongs to the control that is being edited.
- (void)rememberResponder {
    NSResponder* responder = [self firstResponder];
    _selectionBefore = NSMakeRange(NSNotFound, 0);
    if ([responder isKindOfClass:[NSText class]]) {
        NSText* text = static_cast<NSText*>(responder);
        _selectionBefore = [text selectedRange];
        if ([text isFieldEditor] && [[text delegate] isKindOfClass:[NSResponder class]]) {
            responder = static_cast<NSResponder*>([text delegate]);
        }
    }
    _responderBefore = menubar::ObjCPointer<NSResponder>::retain(responder);
}

- (void)restoreResponder {
    const auto responder = std::exchange(_responderBefore, {});
    NSView* view = [responder.get() isKindOfClass:[NSView class]] ? static_cast<NSView*>(responder.get()) : nil;
    if (view == nil || [view window] != self) {
        [self makeFirstResponder:nil];
        return;
    }
    [self makeFirstResponder:view];
    NSResponder* now = [self firstResponder];
    if (_selectionBefore.location != NSNotFound && [now isKindOfClass:[NSText class]]) {
        NSText* text = static_cast<NSText*>(now);
        if (NSMaxRange(_selectionBefore) <= [[text string] length]) {
            [text setSelectedRange:_selectionBefore];
        }
    }
}

- (BOOL)performKeyEquivalent:(NSEvent*)event {
    if (_sheet) {
        return [_sheet.get() performKeyEquivalent:event];
    }
    return [super performKeyEquivalent:event] || [self performShiftedKeyEquivalent:event];
}

/// The main menu names a key and Shift apart, as macOS does; GNUstep's menus compare the name with the character that
/// both give together.
- (BOOL)performShiftedKeyEquivalent:(NSEvent*)event {
    constexpr NSUInteger both = NSEventModifierFlagCommand | NSEventModifierFlagShift;
    NSString* key = [[event charactersIgnoringModifiers] lowercaseString];
    if (([event modifierFlags] & both) != both || [key isEqualToString:[event charactersIgnoringModifiers]]) {
        return NO;
    }
    NSEvent* unshifted = [NSEvent keyEventWithType:[event type]
                                          location:[event locationInWindow]
                                     modifierFlags:[event modifierFlags]
                                         timestamp:[event timestamp]
                                      windowNumber:[event windowNumber]
                                           context:[event context]
                                        characters:key
                       charactersIgnoringModifiers:key
                                         isARepeat:[event isARepeat]
                                           keyCode:[event keyCode]];
    return [[NSApp mainMenu] performKeyEquivalent:unshifted];
}

/// Beneath the sheet views draw without regard to it.
- (void)displayIfNeeded {
    NSView* all = [[self contentView] superview];
    if (_sheet && [all needsDisplay]) {
        [_sheet.get() setNeedsDisplay:YES];
    }
    [super displayIfNeeded];
}

@end
