#pragma once

#include "MenubarApp/Commands/DaemonCommands.h"

#include <functional>
#include <string_view>

namespace menubar {

class MainLoop;

/// Stands where the programs that the menu starts will be driven from: none of them can be started yet. Each call says
/// so in one line and completes through the main loop, as a finished program would.
class PendingCommands final : public DaemonCommands {
public:
    /// The main loop outlives this object.
    PendingCommands(MainLoop& mainLoop, std::function<void(std::string_view)> log);

    void focus(const std::string& workspaceId, const std::optional<std::string>& surfaceId,
               Completion completion) override;
    void notify(const std::string& title, const std::string& body, Completion completion) override;
    void startDaemon(Completion completion) override;
    void stopDaemon(Completion completion) override;

private:
    void refuse(std::string_view action, Completion completion);

    MainLoop& m_mainLoop;
    std::function<void(std::string_view)> m_log;
};

} // namespace menubar
