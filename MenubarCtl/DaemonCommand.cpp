#include "MenubarApp/Commands/LaunchAgent.h"
#include "MenubarApp/Commands/SystemTools.h"
#include "MenubarApp/Platform/PosixFileManager.h"
#include "MenubarCtl/Commands.h"

#include <string>

namespace menubar::ctl {

ExitStatus runDaemon(const Context& context, const CommandContext& commands) {
    const std::string& launchctl = commands.tools.launchctl;
    if (!PosixFileManager::isExecutableFile(launchctl)) {
        return fail("this machine has no " + launchctl + ", which the daemon is controlled with");
    }
    const bool stops = context.line().command == Command::daemonStop;
    const CommandResult result = stops ? LaunchAgent::stopSync(commands) : LaunchAgent::startSync(commands);
    if (result.status != 0 && !PosixFileManager().exists(context.paths().launchAgentPlist)) {
        return fail("the daemon is not installed (run: ostrel install)");
    }
    return finish("launchctl", result);
}

} // namespace menubar::ctl
