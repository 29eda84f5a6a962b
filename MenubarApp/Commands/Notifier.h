#pragma once

#include "MenubarApp/Commands/CommandRunner.h"

#include <string>

namespace menubar {

class MainLoop;
struct CommandContext;

/// Desktop notifications.
namespace Notifier {

/// Posts one through `cmux`, or through the system's script runner where there is no `cmux`. Title and body travel as
/// arguments, so they are shown as they are whatever they hold. Returns at once; `completion` (unless empty) gets the
/// result of the one command on the main thread. The main loop outlives the command. Any thread.
void notify(MainLoop& mainLoop, const CommandContext& context, std::string title, std::string body,
            CommandCompletion completion);

} // namespace Notifier

} // namespace menubar
