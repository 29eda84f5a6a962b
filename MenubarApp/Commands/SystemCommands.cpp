#include "MenubarApp/Commands/SystemCommands.h"

#include "MenubarApp/Commands/Cmux.h"
#include "MenubarApp/Commands/LaunchAgent.h"
#include "MenubarApp/Commands/Notifier.h"

#include <utility>

namespace menubar {

SystemCommands::SystemCommands(MainLoop& mainLoop, CommandContext context)
    : m_mainLoop(mainLoop), m_context(std::move(context)) {}

void SystemCommands::focus(const std::string& workspaceId, const std::optional<std::string>& surfaceId,
                           Completion completion) {
    Cmux::focus(m_mainLoop, m_context, workspaceId, surfaceId, std::move(completion));
}

void SystemCommands::notify(const std::string& title, const std::string& body, Completion completion) {
    Notifier::notify(m_mainLoop, m_context, title, body, [completion = std::move(completion)](const CommandResult&) {
        if (completion) {
            completion();
        }
    });
}

void SystemCommands::startDaemon(Completion completion) {
    LaunchAgent::start(m_mainLoop, m_context, std::move(completion));
}

void SystemCommands::stopDaemon(Completion completion) {
    LaunchAgent::stop(m_mainLoop, m_context, std::move(completion));
}

} // namespace menubar
