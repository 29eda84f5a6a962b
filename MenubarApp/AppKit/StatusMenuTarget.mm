#import "MenubarApp/AppKit/StatusMenuTarget.h"

#include "MenubarApp/AppKit/Conversions.h"

#include <optional>
#include <string>
#include <utility>

using menubar::MenuAction;

@implementation ActionItem

- (MenuAction)menuAction {
    return _menuAction;
}

- (void)setMenuAction:(MenuAction)action {
    _menuAction = action;
}

@end

@implementation StatusMenuTarget

- (void)setEvents:(std::weak_ptr<menubar::StatusMenuEvents>)events {
    _events = std::move(events);
}

// Before the menu opens, and where its items are read while it is closed, by a screen reader for example. GNUstep sends
// it at every change of an item too.
- (void)menuNeedsUpdate:(NSMenu*)menu {
    if (const auto events = _events.lock()) {
        events->menuNeedsUpdate();
    }
}

// The items may be replaced here: AppKit has yet to lay out the menu.
- (void)menuWillOpen:(NSMenu*)menu {
    if (const auto events = _events.lock()) {
        events->menuWillOpen();
    }
}

- (void)menuDidClose:(NSMenu*)menu {
    if (const auto events = _events.lock()) {
        events->menuDidClose();
    }
}

- (void)choose:(ActionItem*)sender {
    const auto events = _events.lock();
    if (events == nullptr) {
        return;
    }
    // The receiver may replace the menu, and with it the sender: take what is needed first.
    const int tag = static_cast<int>([sender tag]);
    std::optional<std::string> path;
    if (id represented = [sender representedObject]; [represented isKindOfClass:[NSURL class]]) {
        path = menubar::toString([static_cast<NSURL*>(represented) path]);
    }
    events->perform([sender menuAction], tag, path);
}

@end
