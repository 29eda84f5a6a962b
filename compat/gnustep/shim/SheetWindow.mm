#import "compat/gnustep/shim/SheetWindow.h"

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

/// That of the text with the insertion point: the main menu's undo and redo ask the window. GNUstep's window would name
/// one of its own, which knows of nothing to do again.
- (NSUndoManager*)undoManager {
    NSResponder* responder = [self firstResponder];
    if ([responder isKindOfClass:[NSTextView class]]) {
        NSTextView* text = static_cast<NSTextView*>(responder);
        id delegate = [text delegate];
        if ([delegate respondsToSelector:@selector(undoManagerForTextView:)]) {
            return [delegate undoManagerForTextView:text];
        }
    }
    return [super undoManager];
}

- (BOOL)performKeyEquivalent:(NSEvent*)event {
    if (_sheet) {
        return [_sheet.get() performKeyEquivalent:event];
    }
    return [super performKeyEquivalent:event] || [self performShiftedKeyEquivalent:event];
}

/// The main menu names a key and Shift apart, as macOS does. GNUstep's menus compare the name with the character that
/// both give together, and take an item without Shift for one with it.
- (BOOL)performShiftedKeyEquivalent:(NSEvent*)event {
    constexpr NSUInteger both = NSEventModifierFlagCommand | NSEventModifierFlagShift;
    if (([event modifierFlags] & both) != both) {
        return NO;
    }
    NSString* key = [[event charactersIgnoringModifiers] lowercaseString];
    for (NSMenuItem* top in [[NSApp mainMenu] itemArray]) {
        NSMenu* menu = [top submenu];
        [menu update];
        for (NSMenuItem* item in [menu itemArray]) {
            if ([item keyEquivalentModifierMask] == both && [[item keyEquivalent] isEqualToString:key]) {
                [menu performActionForItemAtIndex:[menu indexOfItem:item]];
                return YES;
            }
        }
    }
    return NO;
}

/// GNUstep's window gives the focus anew whenever it becomes the key window, and to its first control where nothing has
/// it. What gets the focus is scrolled to: a person who comes back from a menu or a panel would be elsewhere.
- (void)becomeKeyWindow {
    static NSResponder* const nobody = [[NSResponder alloc] init];
    const auto focused = menubar::ObjCPointer<NSResponder>::retain([self firstResponder]);
    _firstResponder = nobody;
    [super becomeKeyWindow];
    _firstResponder = focused.get();
    if (focused.get() != self && [focused.get() respondsToSelector:@selector(becomeKeyWindow)]) {
        [focused.get() performSelector:@selector(becomeKeyWindow)];
    }
    if ([focused.get() isKindOfClass:[NSView class]]) {
        [static_cast<NSView*>(focused.get()) setNeedsDisplay:YES];
    }
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
