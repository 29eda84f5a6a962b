#include "MenubarApp/Commands/Cmux.h"

#include "MenubarApp/Commands/CommandRunner.h"
#include "MenubarApp/Commands/SystemTools.h"
#include "MenubarApp/Platform/MainLoop.h"
#include "MenubarApp/Platform/PosixFileManager.h"
#include "MenubarCore/Daemon/ExecutableLocator.h"

#include <string_view>
#include <utility>

namespace menubar::Cmux {

Environment quietEnvironment() {
    return {{"CMUX_QUIET", "1"}};
}

std::optional<std::string> path(const CommandContext& context) {
    const auto variable = context.environment.find("PATH");
    const auto directories =
        variable == context.environment.end() ? std::nullopt : std::optional<std::string_view>(variable->second);
    return ExecutableLocator::resolve("cmux", context.tools.cmux, directories, PosixFileManager::isExecutableFile);
}

std::string notFound(const SystemTools& tools) {
    std::string text = "cmux not found in [";
    std::string_view separator;
    for (const std::string_view candidate : tools.cmux) {
        text += separator;
        text += '"';
        text += candidate;
        text += '"';
        separator = ", ";
    }
    return text + "] or PATH";
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
    mainLoop.runInBackground([&mainLoop, context, cmux = *std::move(cmux), workspaceId = std::move(workspaceId),
                              surfaceId = std::move(surfaceId), completion = std::move(completion)] {
        focusSync(context, cmux, workspaceId, surfaceId);
        if (completion) {
            mainLoop.post(completion);
        }
    });
}

} // namespace menubar::Cmux
