#include "MenubarApp/Commands/Cmux.h"

#include "MenubarApp/Commands/CommandRunner.h"
#include "MenubarApp/Commands/SystemTools.h"
#include "MenubarApp/Platform/MainLoop.h"
#include "MenubarApp/Platform/PosixFileManager.h"
#include "MenubarCore/Daemon/ExecutableLocator.h"
#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCore/Text/Join.h"

#include <ranges>
#include <utility>

namespace menubar::Cmux {

Environment quietEnvironment() {
    return {{"CMUX_QUIET", "1"}};
}

std::optional<std::string> path(const CommandContext& context) {
    return ExecutableLocator::resolve("cmux", context.tools.cmux, variable(context.environment, "PATH"),
                                      PosixFileManager::isExecutableFile);
}

std::string notFound(const SystemTools& tools) {
    return "cmux not found in [" + joined(tools.cmux | std::views::transform(quoted), ", ") + "] or PATH";
}

CommandResult focusSync(const CommandContext& context, const std::string& cmux, const std::string& workspaceId,
                        const std::optional<std::string>& surfaceId) {
    CommandResult selected =
        CommandRunner::runSync(cmux, {"select-workspace", "--workspace", workspaceId}, quietEnvironment(), context.log);
    if (selected.status != 0 || !surfaceId || surfaceId->empty()) {
        return selected;
    }
    return CommandRunner::runSync(cmux, {"focus-panel", "--panel", *surfaceId, "--workspace", workspaceId},
                                  quietEnvironment(), context.log);
}

void focus(MainLoop& mainLoop, const CommandContext& context, std::string workspaceId,
           std::optional<std::string> surfaceId, std::function<void()> completion) {
    auto cmux = path(context);
    if (!cmux) {
        context.log(notFound(context.tools));
        if (completion) {
            completion();
        }
        return;
    }
    mainLoop.runInBackgroundThen(
        [context, cmux = *std::move(cmux), workspaceId = std::move(workspaceId), surfaceId = std::move(surfaceId)] {
            focusSync(context, cmux, workspaceId, surfaceId);
        },
        std::move(completion));
}

} // namespace menubar::Cmux
