#include "MenubarCtl/Run.h"

#include "MenubarApp/Commands/log.h"
#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarApp/Platform/SystemClock.h"
#include "MenubarCtl/CommandLine.h"
#include "MenubarCtl/Commands.h"
#include "MenubarCtl/Completion.h"
#include "MenubarCtl/Help.h"
#include "MenubarCtl/ThisSystem.h"

#include <string>
#include <utility>

namespace menubar::ctl {

namespace {

ExitStatus loginItemCommand(const Context& context) {
    const auto item = systemLoginItem();
    return item ? runLogin(context, **item) : fail(item.error().message);
}

ExitStatus perform(CommandLine line, const Environment& environment, const SystemTools& tools) {
    if (line.command == Command::help) {
        return print(helpText(line.topic));
    }
    if (line.command == Command::version) {
        return print("ostrel-menubarctl " + std::string(programVersion) + "\n");
    }
    if (line.command == Command::completions) {
        return print(completionScript(line.shell));
    }
    const Context context(std::move(line), environment, tools);
    if (context.line().verbose) {
        log("watching " + context.paths().statusFile);
    }
    switch (context.line().command) {
    case Command::help:
    case Command::version:
    case Command::completions: break; // done above
    case Command::status: return runStatus(context);
    case Command::menu: return runMenu(context);
    case Command::sessions: return runSessions(context);
    case Command::focus: return runFocus(context);
    case Command::bar: return runBar(context);
    case Command::settingsList:
    case Command::settingsGet:
    case Command::settingsSet:
    case Command::settingsReset: return runSettings(context);
    case Command::daemonStatus:
    case Command::daemonStart:
    case Command::daemonStop:
    case Command::daemonRestart: return runDaemon(context);
    case Command::loginStatus:
    case Command::loginOn:
    case Command::loginOff: return loginItemCommand(context);
    case Command::doctor: return runDoctor(context);
    case Command::complete: return runComplete(context);
    }
    return ExitStatus::failed;
}

} // namespace

int run(std::span<const std::string> arguments, const Environment& environment, const SystemTools& tools) {
    secureStandardDescriptors();
    auto line = parseCommandLine(arguments);
    if (!line) {
        return static_cast<int>(refuseUsage(line.error()));
    }
    if (line->timeZone) {
        SystemClock::useZone(*line->timeZone);
    }
    return static_cast<int>(perform(std::move(*line), environment, tools));
}

} // namespace menubar::ctl
