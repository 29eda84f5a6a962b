#pragma once

#include "MenubarCore/Text/EnumTexts.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace menubar {

/// What choosing an item of the status menu asks for.
enum class MenuAction {
    none,
    focusSession,
    openHandoff,
    refreshClicked,
    openSettings,
    toggleCompact,
    startDaemon,
    stopDaemon,
    openLogs,
    openStatusFile,
    quit,
};

template <>
inline constexpr auto enumTexts<MenuAction> = std::to_array<std::string_view>(
    {"", "focusSession", "openHandoff", "refreshClicked", "openSettings", "toggleCompact", "startDaemon", "stopDaemon",
     "openLogs", "openStatusFile", "quit"});

/// The modifiers that go with a key equivalent.
enum class KeyModifiers { command, shiftCommand };

/// One item of a menu as a value: everything that is decided about it, nothing of how it is drawn.
struct MenuItem {
    enum class Kind { item, separator };

    Kind kind = Kind::item;
    std::string title = {};
    std::optional<std::string> tooltip = {}; ///< never empty
    MenuAction action = MenuAction::none;
    std::string_view selector = {}; ///< of a main menu's item: the toolkit's own message, such as "undo:"
    bool enabled = false;
    bool checked = false;
    int tag = 0;         ///< 0 for none; sessions count from 1
    int indentation = 0; ///< levels
    std::string keyEquivalent = {};
    KeyModifiers keyModifiers = KeyModifiers::command;
    std::optional<std::string> path = {}; ///< the file that a hand-off's item stands for
    std::vector<MenuItem> submenu = {};

    bool operator==(const MenuItem&) const = default;
};

using Menu = std::vector<MenuItem>;

} // namespace menubar
