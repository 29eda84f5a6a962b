#pragma once

#include "MenubarCore/Menu/MenuItem.h"

#import <AppKit/AppKit.h>

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
