#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/StatusMenu/StatusMenuEvents.h"

#include <memory>

/// A menu item that carries what choosing it asks for.
@interface ActionItem : NSMenuItem {
    menubar::MenuAction _menuAction;
}

- (menubar::MenuAction)menuAction;
- (void)setMenuAction:(menubar::MenuAction)action;

@end

/// The status menu's delegate and the target of its items: passes on what happens and does nothing else. Once the
/// receiver of the events is gone, nothing happens. Main thread.
@interface StatusMenuTarget : NSObject <NSMenuDelegate> {
    std::weak_ptr<menubar::StatusMenuEvents> _events;
}

- (void)setEvents:(std::weak_ptr<menubar::StatusMenuEvents>)events;

/// Every item's message.
- (void)choose:(ActionItem*)sender;

@end
