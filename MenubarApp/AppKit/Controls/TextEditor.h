#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/Controls/TextEditing.h"

#include <memory>

/// Plain text of several lines. Tab moves on to the next control, as everywhere in the window. Main thread.
@interface MenubarTextEditor : NSTextView <NSTextViewDelegate> {
    std::shared_ptr<menubar::TextSession> _session;
}

- (void)setSession:(std::shared_ptr<menubar::TextSession>)session;

@end
