#include "MenubarCtl/Run.h"

#include "MenubarApp/Commands/log.h"
#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarApp/Platform/StandardDescriptors.h"
#include "MenubarApp/Platform/SystemClock.h"
#include "MenubarCtl/CommandLine.h"
#include "MenubarCtl/Commands.h"
#include "MenubarCtl/SystemLoginItem.h"
#include "MenubarCtl/Terminal.h"

#include <string>
#include <utility>

#include <unistd.h>

// The build names the version; a compiler run by hand knows none.
#if !defined(MENUBAR_VERSION)
#define MENUBAR_VERSION "unversioned"
#endif

namespace menubar::ctl {

namespace {

/// For the commands that run outside programs. Each run is a diagnostic line, which only --verbose shows.
CommandContext commandContext(const Context& context, const SystemTools& tools) {
    CommandContext commands{.environment = context.environment(),
                            .home = homeDirectory(context.environment()),
                            .uid = ::getuid(),
                            .tools = tools};
    if (!context.line().verbose) {
        commands.log = [](std::string_view) {};
    }
    return commands;
}

ExitStatus loginItemCommand(const Context& context) {
    const auto item = systemLoginItem();
    return item ? runLogin(context, **item) : fail(item.error().message);
}

ExitStatus perform(CommandLine line, const Environment& environment, const SystemTools& tools) {
    if (line.command == Command::help) {
        return print(helpText());
    }
    if (line.command == Command::version) {
        return print("ostrel-menubarctl " MENUBAR_VERSION "\n");
    }
    const Context context(std::move(line), environment);
    if (context.line().verbose) {
        log("watching " + context.paths().statusFile);
    }
    switch (context.line().command) {
    case Command::help:
    case Command::version: break; // done above
    case Command::status: return runStatus(context);
    case Command::menu: return context.line().watch ? runMenuWatch(context) : runMenu(context);
    case Command::settingsList:
    case Command::settingsGet:
    case Command::settingsSet:
    case Command::settingsReset: return runSettings(context, commandContext(context, tools));
    case Command::focus: return runFocus(context, commandContext(context, tools));
    case Command::daemonStart:
    case Command::daemonStop:
    case Command::daemonRestart: return runDaemon(context, commandContext(context, tools));
    case Command::loginOn:
    case Command::loginOff:
    case Command::loginStatus: return loginItemCommand(context);
    }
    return ExitStatus::failed;
}

} // namespace

int run(std::span<const std::string> arguments, const Environment& environment, const SystemTools& tools) {
    secureStandardDescriptors();
    auto line = parseCommandLine(arguments);
    if (!line) {
        complain(line.error().message);
        [[maybe_unused]] const auto written = writeAll(STDERR_FILENO, usageText());
        return static_cast<int>(ExitStatus::wrongUsage);
    }
    if (line->timeZone) {
        SystemClock::useZone(*line->timeZone);
    }
    return static_cast<int>(perform(std::move(*line), environment, tools));
}

} // namespace menubar::ctl
