#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/ObjCPointer.h"
#include "MenubarApp/View/Window.h"

#include <functional>
#include <optional>
#include <string>

/// One use of the modal open panel, in a turn of the main loop of its own: what asked for it has returned by then, and
/// its half-done work does not wait for a person. Main thread.
@interface OpenPanelRequest : NSObject {
    menubar::OpenPanel _options;
    std::function<void(std::optional<std::string>)> _chosen;
    menubar::ObjCPointer<NSOpenPanel> _running;
    BOOL _isWithdrawn;
}

- (instancetype)initWithOptions:(const menubar::OpenPanel&)options
                         chosen:(std::function<void(std::optional<std::string>)>)chosen;

- (void)start;

/// Takes the panel away; nobody is told.
- (void)withdraw;

@end
