#pragma once

#include "MenubarApp/Commands/CommandRunner.h"

#include <functional>

namespace menubar {

class MainLoop;
struct CommandContext;

/// The daemon's launch agent, controlled through `launchctl` in the user's own domain.
namespace LaunchAgent {

/// Starts the agent, or kills and starts it again when it runs; one that is not loaded is loaded from its property
/// list, which starts it. The result is that of the last command that was run. Blocks; any thread.
CommandResult startSync(const CommandContext& context);

/// Unloads the agent, which stops it. Blocks; any thread.
CommandResult stopSync(const CommandContext& context);

/// The same in the background. `completion` (unless empty) runs once on the main thread, whatever the outcome: the
/// status file shows the effect. The main loop outlives the commands. Any thread.
void start(MainLoop& mainLoop, const CommandContext& context, std::function<void()> completion);
void stop(MainLoop& mainLoop, const CommandContext& context, std::function<void()> completion);

} // namespace LaunchAgent

} // namespace menubar
