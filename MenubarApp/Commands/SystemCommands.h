#pragma once

#include "MenubarApp/Commands/DaemonCommands.h"
#include "MenubarApp/Commands/SystemTools.h"

namespace menubar {

class MainLoop;

/// The menu's commands on the real programs. Main thread.
class SystemCommands final : public DaemonCommands {
public:
    /// The main loop outlives this object and every command.
    explicit SystemCommands(MainLoop& mainLoop, CommandContext context = CommandContext::ofThisProcess());

    /// Where there is no `cmux`, `completion` runs before this returns.
    void focus(const std::string& workspaceId, const std::optional<std::string>& surfaceId,
               Completion completion) override;
    void notify(const std::string& title, const std::string& body, Completion completion) override;
    void startDaemon(Completion completion) override;
    void stopDaemon(Completion completion) override;

private:
    MainLoop& m_mainLoop;
    const CommandContext m_context;
};

} // namespace menubar
