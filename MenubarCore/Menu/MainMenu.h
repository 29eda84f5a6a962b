#pragma once

#include "MenubarCore/Menu/MenuItem.h"

namespace menubar {

/// The application's main menu: seldom visible, but the source of the editing keys in the settings window.
namespace MainMenu {

/// Three top-level items ("ostrel-menubar", "Edit", "Window"), each with its submenu.
[[nodiscard]] Menu make();

} // namespace MainMenu

} // namespace menubar
