#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/AppKitWindow.h"
#include "MenubarApp/AppKit/ObjCPointer.h"

#include "tests/appkit/WindowDriver.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

/// Does something to the open panel while it is up: its loop runs no more than timers and events.
@interface PanelHand : NSObject {
    std::function<void(NSOpenPanel*)> _act;
    menubar::ObjCPointer<NSTimer> _timer;
}
- (instancetype)initWithAct:(std::function<void(NSOpenPanel*)>)act;
- (void)stop;
@end

namespace menubar::driver {

inline const WindowOptions options{.title = "Test Settings",
                                   .contentSize = {.width = 680.0, .height = 760.0},
                                   .minimumSize = {.width = 520.0, .height = 420.0}};

inline const Alert question{
    .message = "Settings saved", .information = "Restart it now?", .buttons = {"Restart", "Later"}};

/// A window of the app, not shown yet, and what was answered to it.
class WindowTest : public ::testing::Test {
protected:
    WindowTest() { make(); }

    void make() {
        m_window = std::make_unique<AppKitWindow>(options, m_events);
        m_native = ObjCPointer<NSWindow>::retain(m_window->window());
    }

    void ask() {
        m_window->showAlert(question, [this](std::size_t button) { m_answers.push_back(button); });
    }

    void chooseFile(const std::string& startPath = "") {
        m_window->chooseFile({.title = "Log file", .startPath = startPath}, [this](std::optional<std::string> path) {
            m_chosen.push_back(path.value_or("(cancelled)"));
        });
    }

    [[nodiscard]] NSWindow* native() const { return m_native.get(); }

    std::shared_ptr<RecordedEvents> m_events = std::make_shared<RecordedEvents>();
    std::unique_ptr<AppKitWindow> m_window;
    ObjCPointer<NSWindow> m_native;
    std::vector<std::size_t> m_answers;
    std::vector<std::string> m_chosen;
};

/// Such a window, and a hand for its open panel.
class OpenPanelTest : public WindowTest {
protected:
    OpenPanelTest() { m_window->bringForward(); }

    ~OpenPanelTest() override { [m_hand.get() stop]; }

    OpenPanelTest(const OpenPanelTest&) = delete;
    OpenPanelTest& operator=(const OpenPanelTest&) = delete;

    void act(std::function<void(NSOpenPanel*)> act) {
        m_hand = ObjCPointer<PanelHand>::adopt([[PanelHand alloc] initWithAct:std::move(act)]);
    }

    ObjCPointer<PanelHand> m_hand;
};

} // namespace menubar::driver
