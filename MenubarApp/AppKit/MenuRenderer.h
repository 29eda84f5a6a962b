#pragma once

#import <AppKit/AppKit.h>

#include "MenubarCore/Menu/MenuItem.h"

namespace menubar {

/// Turns a menu as a value into native items, and decides nothing. Main thread.
///
/// `target` gets the messages that it answers; those of the main menu that it does not answer have no target and travel
/// along the responder chain. A hand-off's item represents its file URL.
[[nodiscard]] NSArray<NSMenuItem*>* makeMenuItems(const Menu& menu, id target);

/// Gives the application its main menu. It is seldom seen, but its key equivalents count in every window.
void installMainMenu(id target);

} // namespace menubar
