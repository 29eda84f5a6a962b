#pragma once

#include "MenubarApp/Platform/Observers.h"
#include "MenubarCore/System/Interface.h"

#include <functional>
#include <string>

namespace menubar {

/// Hands files to the desktop. Returns at once, whatever the desktop does with them. Main thread.
class FileOpener : public Interface {
public:
    /// A file in its default application, a directory in the file viewer.
    virtual void open(const std::string& path) = 0;

    /// A file, selected in the file viewer.
    virtual void reveal(const std::string& path) = 0;
};

/// The desktop around the app. Main thread.
class Workspace : public FileOpener {
public:
    /// Whether the Option key is down in the event being handled.
    [[nodiscard]] virtual bool isOptionKeyDown() const = 0;

    /// Calls `action` whenever the machine has woken from sleep, during which no timer runs.
    virtual Subscription onWake(std::function<void()> action) = 0;

    /// Asks the application to terminate; it may take until the next turn of the event loop.
    virtual void terminate() = 0;
};

} // namespace menubar
