#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/ObjCPointer.h"

/// A window that can lay a view over all of its content, as a sheet: what is beneath gets neither clicks nor keys until
/// the sheet ends, and has the insertion point back then. Main thread.
@interface SheetWindow : NSWindow {
    menubar::ObjCPointer<NSView> _sheet;
    menubar::ObjCPointer<NSResponder> _responderBefore;
    NSRange _selectionBefore;
}

/// `view` takes the keys. An earlier sheet ends.
- (void)beginSheetView:(NSView*)view;
- (void)endSheetView;

/// Nil when there is none.
- (NSView*)sheetView;

@end
