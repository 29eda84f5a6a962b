#pragma once

#include "MenubarApp/Settings/SettingsWindowController.h"

#include "tests/support/RecordingWindows.h"
#include "tests/support/SettingsHarness.h"

#include <memory>
#include <string>

namespace menubar::recording {

/// A settings window on a desktop that is played, over a real model and config file. Set the scene, then `open()`.
struct SettingsWindowHarness : SettingsHarness {
    FakeWindows windows;
    std::shared_ptr<SettingsWindowController> controller;

    void createController() {
        create();
        controller = SettingsWindowController::create(
            environment, model,
            {.mainLoop = mainLoop, .windows = windows, .clock = clock, .log = [this](std::string_view line) {
                 log.emplace_back(line);
             }});
    }

    /// Shows the window and waits until all is loaded.
    void open() {
        if (!controller) {
            createController();
        }
        controller->show();
        mainLoop.drain();
    }

    [[nodiscard]] WindowRecord& window() const { return *windows.windows.back(); }

    [[nodiscard]] RecordingViewHost& host() const { return window().host; }

    /// The launch agent's property list is there from the next poll on.
    void installDaemon() {
        std::filesystem::create_directories(home / "Library/LaunchAgents");
        home.write("Library/LaunchAgents/dev.ostrel.daemon.plist", "");
    }

    /// Shows the window, which knows of the launch agent.
    void openWithDaemon() {
        installDaemon();
        open();
        poll();
    }

    void poll(const StatusFile* status = nullptr) { poll(status, DaemonState::Missing{}); }

    void poll(const StatusFile* status, const DaemonState& state) {
        controller->update(status, state);
        mainLoop.drain();
    }

    /// The text field of the setting with this label.
    [[nodiscard]] ControlId input(std::string_view label) const { return host().find("TextField", label); }

    void type(std::string_view label, const std::string& text) {
        host().type(input(label), text);
        mainLoop.drain();
    }

    bool press(std::string_view title) {
        const bool isPressed = host().press(title);
        mainLoop.drain();
        return isPressed;
    }

    /// Whether a text that begins so is on the screen.
    [[nodiscard]] bool shows(const std::string& beginning) const {
        return host().find("Text \"" + beginning) != windowContent;
    }
};

} // namespace menubar::recording
