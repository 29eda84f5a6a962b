#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/AppKitViewHost.h"
#include "MenubarApp/AppKit/ObjCPointer.h"
#include "MenubarApp/View/ViewHost.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

/// Plays a person at the controls of a window.
namespace menubar::driver {

/// What a host told, a line each: "pressed 1", "toggled 2 on", "stepped 3 up", "picked 4 0", "began 5", "text 5: abc",
/// "ended 5". Sizes are kept apart.
class RecordingViewEvents final : public ViewEvents {
public:
    void resized(Size size) override { sizes.push_back(size); }

    void pressed(ControlId id) override { note("pressed " + std::to_string(id)); }

    void toggled(ControlId id, bool isOn) override { note("toggled " + std::to_string(id) + (isOn ? " on" : " off")); }

    void stepped(ControlId id, StepDirection direction) override {
        note("stepped " + std::to_string(id) + (direction == StepDirection::up ? " up" : " down"));
    }

    void picked(ControlId id, std::size_t option) override {
        note("picked " + std::to_string(id) + " " + std::to_string(option));
    }

    void editingBegan(ControlId id) override { note("began " + std::to_string(id)); }

    void textChanged(ControlId id, const std::string& text) override {
        note("text " + std::to_string(id) + ": " + text);
    }

    void editingEnded(ControlId id) override { note("ended " + std::to_string(id)); }

    std::vector<std::string> takeLog() { return std::exchange(log, {}); }

    std::vector<std::string> log;
    std::vector<Size> sizes;
    std::function<void()> onEvent; ///< after each line

private:
    void note(const std::string& line) {
        log.push_back(line);
        if (onEvent) {
            onEvent();
        }
    }
};

/// A window on the screen with a host for its content.
class ControlsInAWindow : public ::testing::Test {
protected:
    ControlsInAWindow();
    ~ControlsInAWindow() override;

    /// Makes a control in the window, 200 by 24 points large, below those that are there; its id counts from 1.
    ControlId add(View::Content content, ControlId parent = windowContent);
    /// Shows `now` in the control, which showed `before`.
    void update(ControlId shown, const View::Content& now, const View::Content& before);

    template <class View>
    View* native(ControlId shown) const {
        return static_cast<View*>(host().nativeView(shown));
    }

    [[nodiscard]] AppKitViewHost& host() const { return *m_host; }

    void focus(ControlId shown) { [m_window.get() makeFirstResponder:host().keyView(shown)]; }

    /// The control that has the focus, also through the field editor.
    [[nodiscard]] ControlId focused() const;

    /// Presses and lets go of a key, as the application gets it from the keyboard.
    void key(unichar character, NSUInteger modifiers = 0);
    void type(const std::string& text);
    /// A click in the middle of the view, or that far from it.
    void click(NSView* view, NSPoint offset = NSZeroPoint);

    /// The text view that is being typed into; nil when none is.
    [[nodiscard]] NSTextView* editor() const;
    [[nodiscard]] std::string shownText(ControlId shown) const;

    ObjCPointer<NSWindow> m_window;
    ObjCPointer<NSView> m_content = makeFlippedContentView();
    std::shared_ptr<RecordingViewEvents> m_events = std::make_shared<RecordingViewEvents>();
    std::unique_ptr<AppKitViewHost> m_host;

private:
    ControlId m_lastId = windowContent;
};

} // namespace menubar::driver
