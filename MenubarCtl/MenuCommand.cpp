#include "MenubarCtl/Commands.h"
#include "MenubarCtl/JSONOutput.h"
#include "MenubarCtl/TextOutput.h"

#include <string>

namespace menubar::ctl {

ExitStatus runMenu(const Context& context) {
    const Observation observation = context.observe();
    if (context.line().json) {
        return printDocument(menuDocument(observation.menu.items));
    }
    std::string text;
    for (const std::string& line : menuLines(observation.poll.presentation, observation.menu, context.outputStyle())) {
        text += line + "\n";
    }
    return print(text);
}

} // namespace menubar::ctl
