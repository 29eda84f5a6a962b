#include "MenubarCtl/Commands.h"
#include "MenubarCtl/JSONOutput.h"
#include "MenubarCtl/TextOutput.h"

#include <unistd.h>

namespace menubar::ctl {

ExitStatus runStatus(const Context& context) {
    const Observation observation = context.observe();
    if (context.line().json) {
        return printDocument(statusDocument(observation.poll, observation.timeZone));
    }
    const Styling styling = stylingFor(isTerminal(STDOUT_FILENO), context.environment());
    return print(statusText(observation.poll, context.paths().statusFile, observation.timeZone, styling));
}

} // namespace menubar::ctl
