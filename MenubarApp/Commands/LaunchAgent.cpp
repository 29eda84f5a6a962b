#include "MenubarApp/Commands/LaunchAgent.h"

#include "MenubarApp/Commands/CommandRunner.h"
#include "MenubarApp/Commands/SystemTools.h"
#include "MenubarApp/Platform/MainLoop.h"
#include "MenubarCore/Daemon/LaunchAgentLabel.h"

#include <string>
#include <utility>

namespace menubar::LaunchAgent {

namespace {

/// The user's domain, in which agents are loaded.
std::string domain(const CommandContext& context) {
    return "gui/" + std::to_string(context.uid);
}

/// The agent within it.
std::string service(const CommandContext& context) {
    return domain(context) + "/" + std::string(LaunchAgentLabel);
}

CommandResult launchctl(const CommandContext& context, const std::vector<std::string>& arguments) {
    return CommandRunner::runSync(context.tools.launchctl, arguments, {}, context.log);
}

} // namespace

CommandResult startSync(const CommandContext& context) {
    CommandResult kicked = launchctl(context, {"kickstart", "-k", service(context)});
    if (kicked.status == 0) {
        return kicked;
    }
    // Loading names the domain alone: the property list says which service.
    return launchctl(context, {"bootstrap", domain(context), launchAgentPlistPath(context.home)});
}

CommandResult stopSync(const CommandContext& context) {
    return launchctl(context, {"bootout", service(context)});
}

void start(MainLoop& mainLoop, const CommandContext& context, std::function<void()> completion) {
    mainLoop.runInBackgroundThen([context] { startSync(context); }, std::move(completion));
}

void stop(MainLoop& mainLoop, const CommandContext& context, std::function<void()> completion) {
    mainLoop.runInBackgroundThen([context] { stopSync(context); }, std::move(completion));
}

} // namespace menubar::LaunchAgent
