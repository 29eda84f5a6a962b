#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/Controls/TextEditing.h"

#include <memory>
#include <string>

/// A field that says when it gets and loses the insertion point, and what is typed into it. Return ends what was typed
/// and starts anew with all of it selected, unless a button of the window waits for Return. Main thread.
@interface MenubarTextField : NSTextField <NSTextFieldDelegate> {
    std::shared_ptr<menubar::TextSession> _session;
}

- (void)setSession:(std::shared_ptr<menubar::TextSession>)session;

/// The field editor while it is in this field; nil otherwise.
- (NSTextView*)editor;

/// Also while it is being edited.
- (void)showText:(const std::string&)text;

- (void)commit;

@end
