#include "MenubarCore/Menu/MainMenu.h"

namespace menubar {

namespace {

MenuItem command(std::string title, MenuAction action, std::string key,
                 KeyModifiers modifiers = KeyModifiers::command) {
    return {.title = std::move(title),
            .action = action,
            .enabled = true,
            .keyEquivalent = std::move(key),
            .keyModifiers = modifiers};
}

MenuItem separator() {
    return {.kind = MenuItem::Kind::separator};
}

MenuItem topLevel(std::string title, Menu submenu) {
    return {.title = std::move(title), .enabled = true, .submenu = std::move(submenu)};
}

} // namespace

Menu MainMenu::make() {
    return {
        topLevel("ostrel-menubar",
                 {
                     command("Settings...", MenuAction::showSettings, ","),
                     separator(),
                     command("Quit ostrel-menubar", MenuAction::terminate, "q"),
                 }),
        topLevel("Edit",
                 {
                     command("Undo", MenuAction::undo, "z"),
                     command("Redo", MenuAction::redo, "z", KeyModifiers::shiftCommand),
                     separator(),
                     command("Cut", MenuAction::cut, "x"),
                     command("Copy", MenuAction::copy, "c"),
                     command("Paste", MenuAction::paste, "v"),
                     command("Select All", MenuAction::selectAll, "a"),
                 }),
        topLevel("Window",
                 {
                     command("Close", MenuAction::performClose, "w"),
                     command("Minimize", MenuAction::performMiniaturize, "m"),
                 }),
    };
}

} // namespace menubar
