#include "MenubarApp/Commands/LaunchAgent.h"
#include "MenubarApp/Platform/PosixFileManager.h"
#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCtl/Commands.h"

#include <string>

namespace menubar::ctl {

namespace {

/// What launchctl's status says when there is no such agent in the domain.
bool isNotLoaded(const CommandResult& result) {
    constexpr std::int32_t noSuchProcess = 3;
    constexpr std::int32_t noSuchService = 113;
    return result.status == noSuchProcess || result.status == noSuchService;
}

ExitStatus tellState(const Context& context) {
    const Observation observation = context.observe();
    const ExitStatus printed = print(displayText(observation.poll.state.title(observation.timeZone)) + "\n");
    return printed == ExitStatus::done && !observation.poll.state.isRunning() ? ExitStatus::failed : printed;
}

ExitStatus stop(const Context& context) {
    const CommandResult result = LaunchAgent::stopSync(context.commands());
    if (!isNotLoaded(result)) {
        return finish("launchctl", result);
    }
    if (context.observe().poll.state.isRunning()) {
        return fail("the daemon runs, but its launch agent is not loaded: end it where it was started");
    }
    return print("the daemon does not run\n");
}

} // namespace

ExitStatus runDaemon(const Context& context) {
    if (context.line().command == Command::daemonStatus) {
        return tellState(context);
    }
    const std::string& launchctl = context.commands().tools.launchctl;
    if (!PosixFileManager::isExecutableFile(launchctl)) {
        return fail("this machine has no " + launchctl + ", which the daemon is controlled with");
    }
    if (context.line().command == Command::daemonStop) {
        return stop(context);
    }
    const CommandResult result = LaunchAgent::startSync(context.commands());
    if (result.status != 0 && !PosixFileManager().exists(context.paths().launchAgentPlist)) {
        return fail("the daemon is not installed (run: ostrel install)");
    }
    return finish("launchctl", result);
}

} // namespace menubar::ctl
