#pragma once

#include "MenubarApp/Commands/CommandRunner.h"
#include "MenubarCore/System/Environment.h"

#include <functional>
#include <optional>
#include <string>

namespace menubar {

class MainLoop;
struct CommandContext;
struct SystemTools;

/// The terminal program that sessions run in.
namespace Cmux {

/// What every call of `cmux` gets besides the inherited environment.
[[nodiscard]] Environment quietEnvironment();

/// Where `cmux` is: the first candidate that is an executable file, else the first in a directory of PATH. Any thread.
[[nodiscard]] std::optional<std::string> path(const CommandContext& context);

/// "cmux not found in [", the candidates in double quotes, "] or PATH".
[[nodiscard]] std::string notFound(const SystemTools& tools);

/// Brings a workspace to the front, then, if that succeeded and a surface is named, the surface in it. The result is
/// that of the last command that was run. Blocks; any thread.
CommandResult focusSync(const CommandContext& context, const std::string& cmux, const std::string& workspaceId,
                        const std::optional<std::string>& surfaceId);

/// The same in the background. `completion` runs once whatever the outcome: on the main thread; or, when there is no
/// `cmux`, before this returns. The main loop outlives the commands. Main thread.
void focus(MainLoop& mainLoop, const CommandContext& context, std::string workspaceId,
           std::optional<std::string> surfaceId, std::function<void()> completion);

} // namespace Cmux

} // namespace menubar
