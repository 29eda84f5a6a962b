#include "MenubarApp/Commands/PendingCommands.h"

#include "MenubarApp/Platform/MainLoop.h"

#include <utility>

namespace menubar {

PendingCommands::PendingCommands(MainLoop& mainLoop, std::function<void(std::string_view)> log)
    : m_mainLoop(mainLoop), m_log(std::move(log)) {}

void PendingCommands::focus(const std::string& workspaceId, const std::optional<std::string>&, Completion completion) {
    refuse("focusing workspace " + workspaceId, std::move(completion));
}

void PendingCommands::notify(const std::string& title, const std::string&, Completion completion) {
    refuse("the notification \"" + title + "\"", std::move(completion));
}

void PendingCommands::startDaemon(Completion completion) {
    refuse("starting the daemon", std::move(completion));
}

void PendingCommands::stopDaemon(Completion completion) {
    refuse("stopping the daemon", std::move(completion));
}

void PendingCommands::refuse(std::string_view action, Completion completion) {
    m_log(std::string(action) + " is not available yet");
    if (completion) {
        m_mainLoop.post(std::move(completion));
    }
}

} // namespace menubar
