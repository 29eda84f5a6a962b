#include "MenubarCore/Menu/ConfigNotices.h"
#include "MenubarCtl/Commands.h"
#include "MenubarCtl/JSONOutput.h"
#include "MenubarCtl/TextOutput.h"

namespace menubar::ctl {

ExitStatus runStatus(const Context& context) {
    const Observation observation = context.observe();
    const StatusPoll& poll = observation.poll;
    const ExitStatus printed =
        context.line().json
            ? printDocument(statusDocument(poll, observation.timeZone))
            : print(statusText(poll, context.paths().statusFile, observation.timeZone, context.outputStyle().styling));
    if (printed != ExitStatus::done || !context.line().check) {
        return printed;
    }
    const bool isWell = poll.state.isRunning() && ConfigNotices::notices(poll.snapshot.file(), poll.state).empty();
    return isWell ? ExitStatus::done : ExitStatus::failed;
}

} // namespace menubar::ctl
