#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/StatusMenu/StatusMenuEvents.h"

#include <memory>

/// The status menu's delegate and the target of its items: passes on what happens and does nothing else. Once the
/// receiver of the events is gone, nothing happens. Main thread.
@interface StatusMenuTarget : NSObject <NSMenuDelegate> {
    std::weak_ptr<menubar::StatusMenuEvents> _events;
}

- (void)setEvents:(std::weak_ptr<menubar::StatusMenuEvents>)events;

- (void)focusSession:(NSMenuItem*)sender;
- (void)openHandoff:(NSMenuItem*)sender;
- (void)refreshClicked:(NSMenuItem*)sender;
- (void)openSettings:(NSMenuItem*)sender;
- (void)toggleCompact:(NSMenuItem*)sender;
- (void)startDaemon:(NSMenuItem*)sender;
- (void)stopDaemon:(NSMenuItem*)sender;
- (void)openLogs:(NSMenuItem*)sender;
- (void)openStatusFile:(NSMenuItem*)sender;
- (void)quit:(NSMenuItem*)sender;

@end
