#pragma once

#include "MenubarCore/System/Interface.h"

#include <functional>
#include <optional>
#include <string>

namespace menubar {

/// The programs that the menu starts: the terminal's, the notifier's and the daemon's. Every function returns at once;
/// the work is done in the background and `completion` runs once, on the main thread. `focus` may run it before it
/// returns, when there is nothing to do. Main thread.
class DaemonCommands : public Interface {
public:
    using Completion = std::function<void()>;

    /// Brings a session's terminal workspace, and the surface in it when given, to the front.
    virtual void focus(const std::string& workspaceId, const std::optional<std::string>& surfaceId,
                       Completion completion) = 0;

    /// Posts a desktop notification.
    virtual void notify(const std::string& title, const std::string& body, Completion completion) = 0;

    /// Starts the daemon, or restarts it when it runs.
    virtual void startDaemon(Completion completion) = 0;

    virtual void stopDaemon(Completion completion) = 0;
};

} // namespace menubar
