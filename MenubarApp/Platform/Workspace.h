#pragma once

#include "MenubarApp/Platform/Observers.h"
#include "MenubarCore/System/Interface.h"

#include <functional>
#include <string>

namespace menubar {

/// The desktop around the app. Main thread.
class Workspace : public Interface {
public:
    /// Opens a file with its default application, or a directory in the file viewer.
    virtual void open(const std::string& path) = 0;

    /// Shows and selects a file in the file viewer.
    virtual void reveal(const std::string& path) = 0;

    /// Whether the Option key is down in the event being handled.
    [[nodiscard]] virtual bool isOptionKeyDown() const = 0;

    /// Calls `action` whenever the machine has woken from sleep, during which no timer runs.
    virtual Subscription onWake(std::function<void()> action) = 0;

    /// Asks the application to terminate; it may take until the next turn of the event loop.
    virtual void terminate() = 0;
};

} // namespace menubar
