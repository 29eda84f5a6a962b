#pragma once

#include "MenubarApp/AppKit/AppKitMainLoop.h"
#include "MenubarApp/AppKit/AppKitWindow.h"
#include "MenubarApp/Platform/PosixFileManager.h"
#include "MenubarApp/Settings/SettingsModel.h"
#include "MenubarApp/Settings/SettingsWindowController.h"

#include "tests/support/RecordingShell.h"
#include "tests/support/TemporaryDirectory.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#import <AppKit/AppKit.h>

namespace menubar::driver {

/// The settings window on the screen, on the app's own main loop, over a real config file and a daemon that answers
/// what the test told it to; and a person's eyes and hands. What is named by a text is looked for as a person would:
/// the control nearest below the label of its row.
class SettingsScreen {
public:
    SettingsScreen();
    ~SettingsScreen();
    SettingsScreen(const SettingsScreen&) = delete;
    SettingsScreen& operator=(const SettingsScreen&) = delete;

    // The daemon. Set before what asks it.

    void setSchema(std::string schema);
    /// How `config schema` and `config validate` end from now on.
    void setSchemaStatus(int status);
    void setVerdict(int status, std::string json);
    /// From now on the validator does not answer before `releaseValidator`.
    void holdValidator();
    void releaseValidator();
    [[nodiscard]] bool isValidating() const;

    // The window

    /// Shows it, makes it the key window, and waits until all is loaded or has failed.
    void open();

    [[nodiscard]] NSWindow* window() const { return m_window.get(); }

    [[nodiscard]] bool isOpen() const { return m_controller->isOpen(); }

    [[nodiscard]] SettingsWindowController& controller() { return *m_controller; }

    [[nodiscard]] SettingsModel& model() { return *m_model; }

    void installDaemon() const;
    /// The daemon's state as a poll finds it.
    void poll(const StatusFile* status);
    /// The config file's bytes; empty when there is none.
    [[nodiscard]] std::string config() const;
    void writeConfig(std::string_view bytes) const;
    /// Lets all that was posted run.
    void settle() const;

    // Eyes

    /// Whether a text that begins so is anywhere in the window.
    [[nodiscard]] bool shows(const std::string& beginning) const;
    [[nodiscard]] bool waitToShow(const std::string& beginning) const;
    /// Whether that text is in the part of the form that is scrolled into view.
    [[nodiscard]] bool isInSight(const std::string& beginning) const;
    /// The label with a text that begins so; nil when there is none.
    [[nodiscard]] NSTextField* label(const std::string& beginning) const;
    /// The button of that title; nil when there is none.
    [[nodiscard]] NSButton* button(const std::string& title) const;
    /// The first control of that class in the row of the setting with this label; nil when there is none.
    [[nodiscard]] NSView* control(const std::string& setting, Class type) const;
    [[nodiscard]] NSTextField* field(const std::string& setting) const;
    /// All editable fields of the row, from above.
    [[nodiscard]] std::vector<NSTextField*> fields(const std::string& setting) const;
    [[nodiscard]] std::string text(const std::string& setting) const;
    /// The text view that has the insertion point; nil when no text has it.
    [[nodiscard]] NSTextView* editor() const;

    // Hands

    /// Puts the insertion point into the field with all of it selected.
    void focus(NSView* field) const;
    /// Replaces the field's text key by key.
    void type(const std::string& setting, const std::string& text) const;
    void press(const std::string& title) const;
    void pressNear(const std::string& setting, const std::string& title) const;

    recording::FakeCommands commands;
    std::vector<std::string> log;

private:
    CommandResult run(const std::vector<std::string>& arguments);
    [[nodiscard]] std::vector<NSView*> rowViews(const std::string& setting) const;

    struct Daemon {
        mutable std::mutex mutex;
        std::condition_variable changed;
        CommandResult schema;
        CommandResult verdict;
        bool isHeld = false;
        bool isValidating = false;
    };

    testing_support::TemporaryDirectory m_home;
    Daemon m_daemon;
    PosixFileManager m_files;
    recording::FakeClock m_clock;
    AppKitWindowFactory m_windows;
    AppKitMainLoop m_mainLoop; // after what its background actions use
    std::shared_ptr<SettingsModel> m_model;
    std::shared_ptr<SettingsWindowController> m_controller;
    ObjCPointer<NSWindow> m_window;
};

} // namespace menubar::driver
