#pragma once

#include "MenubarApp/View/Geometry.h"
#include "MenubarApp/View/ViewHost.h"
#include "MenubarCore/System/Interface.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace menubar {

/// A question with buttons.
struct Alert {
    std::string message;
    std::string information;
    std::vector<std::string> buttons; ///< not empty; the first is the default

    bool operator==(const Alert&) const = default;
};

/// What a person may choose in an open panel: one file or directory, hidden ones too.
struct OpenPanel {
    std::string title;     ///< what it is for
    std::string startPath; ///< what is chosen now, whether it exists or not; not absolute: the usual place

    bool operator==(const OpenPanel&) const = default;
};

/// What happens to a window as a whole. Main thread.
class WindowEvents : public Interface {
public:
    /// The window is about to go, by its close button, a key or `performClose`. Its controls are still there during the
    /// call. The Window object may be destroyed any time afterwards.
    virtual void windowWillClose() = 0;
};

/// One window on the screen; destroying it closes it without an event. Main thread.
class Window : public Interface {
public:
    /// The controls in it; as long as this object.
    [[nodiscard]] virtual ViewHost& content() = 0;

    /// Activates the app, above all others, and makes the window the one that takes keys, in front of all.
    virtual void bringForward() = 0;

    /// As if its close button were pressed.
    virtual void performClose() = 0;

    /// Shows a sheet on the window and returns at once. `answer` gets the index of the pressed button, once; it is not
    /// called when the window goes first.
    virtual void showAlert(const Alert& alert, std::function<void(std::size_t button)> answer) = 0;

    /// Shows the modal open panel, before or after returning. `chosen` gets the path, or nothing when the person
    /// cancels, once; it is not called when the window goes first.
    virtual void chooseFile(const OpenPanel& panel, std::function<void(std::optional<std::string> path)> chosen) = 0;
};

struct WindowOptions {
    std::string title;
    Size contentSize;
    Size minimumSize; ///< of the window, below which it cannot be resized

    bool operator==(const WindowOptions&) const = default;
};

/// Makes windows. Main thread.
class WindowFactory : public Interface {
public:
    /// A window that can be closed, minimised and resized, in the middle of the screen, not shown before
    /// `bringForward`.
    [[nodiscard]] virtual std::unique_ptr<Window> makeWindow(const WindowOptions& options,
                                                             std::weak_ptr<WindowEvents> events) = 0;
};

} // namespace menubar
