#pragma once

#include "MenubarApp/View/Window.h"

#include <cstddef>
#include <string>
#include <vector>

#import <AppKit/AppKit.h>

/// A person at a window: keys, and the sheet's buttons.
namespace menubar::driver {

/// What a window told.
struct RecordedEvents final : WindowEvents {
    void windowWillClose() override { ++closed; }

    int closed = 0;
};

/// What the keyboard sends to the window. `characters` as the event has them: "\r", "a", NSTabCharacter.
[[nodiscard]] NSEvent* keyEvent(NSWindow* window, NSEventType type, NSString* characters, NSUInteger modifiers);

/// Sends one key press through the application, to the window or to its sheet.
void pressKey(NSWindow* window, NSString* characters, NSUInteger modifiers = 0);

/// Types a text, one key press a character.
void typeKeys(NSWindow* window, const std::string& text);

/// The titles of the sheet's buttons, the first first; empty when there is no sheet.
[[nodiscard]] std::vector<std::string> alertButtons(NSWindow* window);

/// Clicks the sheet's button of that index.
void clickAlertButton(NSWindow* window, std::size_t index);

} // namespace menubar::driver
