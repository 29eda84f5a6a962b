#include "MenubarApp/Commands/Notifier.h"

#include "MenubarApp/Commands/Cmux.h"
#include "MenubarApp/Commands/CommandRunner.h"
#include "MenubarApp/Commands/SystemTools.h"

#include <utility>

namespace menubar {

void Notifier::notify(MainLoop& mainLoop, const CommandContext& context, std::string title, std::string body,
                      CommandCompletion completion) {
    if (auto cmux = Cmux::path(context)) {
        CommandRunner::run(mainLoop, *std::move(cmux),
                           {"notify", "--title", std::move(title), "--body", std::move(body)}, Cmux::quietEnvironment(),
                           std::move(completion), context.log);
        return;
    }
    context.log(Cmux::notFound(context.tools) + "; using osascript for the notification");
    CommandRunner::run(mainLoop, context.tools.osascript,
                       {"-e", "on run argv", "-e", "display notification (item 2 of argv) with title (item 1 of argv)",
                        "-e", "end run", std::move(title), std::move(body)},
                       {}, std::move(completion), context.log);
}

} // namespace menubar
