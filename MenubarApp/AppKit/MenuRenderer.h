#pragma once

#include "MenubarApp/Platform/StatusItem.h"

#include <memory>

#import <AppKit/AppKit.h>

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

namespace menubar {

/// Makes `menu`, which shows `before` (an empty one nothing), show `now`: turns a menu as a value into native items,
/// and decides nothing. An item that goes on, before or after all others, stays the same native one: a menu that is
/// open keeps its highlight only in an item that stays. Main thread.
///
/// `target` gets the messages that it answers; those of the main menu that it does not answer have no target and travel
/// along the responder chain. A hand-off's item represents its file URL.
void updateMenu(NSMenu* menu, const Menu& before, const Menu& now, id target);

/// Gives the application its main menu. It is seldom seen, but its key equivalents count in every window.
void installMainMenu(id target);

} // namespace menubar
