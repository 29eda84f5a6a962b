#include "MenubarCtl/Commands.h"
#include "MenubarCtl/JSONOutput.h"
#include "MenubarCtl/TextOutput.h"

#include <string>

#include <unistd.h>

namespace menubar::ctl {

ExitStatus runMenu(const Context& context) {
    const Observation observation = context.observe();
    if (context.line().json) {
        return printDocument(menuDocument(observation.menu.items));
    }
    const TextStyle style{.columns = terminalSize(STDOUT_FILENO).columns,
                          .styling = stylingFor(isTerminal(STDOUT_FILENO), context.environment())};
    std::string text;
    for (const std::string& line : menuLines(observation.poll.presentation, observation.menu, style)) {
        text += line + "\n";
    }
    return print(text);
}

} // namespace menubar::ctl
