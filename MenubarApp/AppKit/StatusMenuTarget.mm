#import "MenubarApp/AppKit/StatusMenuTarget.h"

#include "MenubarApp/AppKit/Conversions.h"

#include <optional>
#include <string>
#include <utility>

using menubar::MenuAction;

@implementation StatusMenuTarget

- (void)setEvents:(std::weak_ptr<menubar::StatusMenuEvents>)events {
    _events = std::move(events);
}

- (void)perform:(MenuAction)action sender:(NSMenuItem*)sender {
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
    events->perform(action, tag, path);
}

// Not menuNeedsUpdate:, which GNUstep sends at every change of an item. The items may be replaced here: AppKit has yet
// to lay out the menu.
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

- (void)focusSession:(NSMenuItem*)sender {
    [self perform:MenuAction::focusSession sender:sender];
}

- (void)openHandoff:(NSMenuItem*)sender {
    [self perform:MenuAction::openHandoff sender:sender];
}

- (void)refreshClicked:(NSMenuItem*)sender {
    [self perform:MenuAction::refreshClicked sender:sender];
}

- (void)openSettings:(NSMenuItem*)sender {
    [self perform:MenuAction::openSettings sender:sender];
}

- (void)toggleCompact:(NSMenuItem*)sender {
    [self perform:MenuAction::toggleCompact sender:sender];
}

- (void)startDaemon:(NSMenuItem*)sender {
    [self perform:MenuAction::startDaemon sender:sender];
}

- (void)stopDaemon:(NSMenuItem*)sender {
    [self perform:MenuAction::stopDaemon sender:sender];
}

- (void)openLogs:(NSMenuItem*)sender {
    [self perform:MenuAction::openLogs sender:sender];
}

- (void)openStatusFile:(NSMenuItem*)sender {
    [self perform:MenuAction::openStatusFile sender:sender];
}

- (void)quit:(NSMenuItem*)sender {
    [self perform:MenuAction::quit sender:sender];
}

@end
