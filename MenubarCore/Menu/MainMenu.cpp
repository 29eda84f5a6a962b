#include "MenubarCore/Menu/MainMenu.h"

namespace menubar {

namespace {

MenuItem command(std::string title, std::string_view selector, std::string key,
                 KeyModifiers modifiers = KeyModifiers::command) {
    return {.title = std::move(title),
            .selector = selector,
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
                     command("Settings...", "show:", ","),
                     separator(),
                     command("Quit ostrel-menubar", "terminate:", "q"),
                 }),
        topLevel("Edit",
                 {
                     command("Undo", "undo:", "z"),
                     command("Redo", "redo:", "z", KeyModifiers::shiftCommand),
                     separator(),
                     command("Cut", "cut:", "x"),
                     command("Copy", "copy:", "c"),
                     command("Paste", "paste:", "v"),
                     command("Select All", "selectAll:", "a"),
                 }),
        topLevel("Window",
                 {
                     command("Close", "performClose:", "w"),
                     command("Minimize", "performMiniaturize:", "m"),
                 }),
    };
}

} // namespace menubar
