#include "MenubarCtl/BarOutput.h"
#include "MenubarCtl/Commands.h"
#include "MenubarCtl/ProgramPath.h"
#include "MenubarCtl/TextWatch.h"

#include <string>

namespace menubar::ctl {

ExitStatus runBar(const Context& context) {
    const BarFormat format = context.line().barFormat;
    const std::string program = programPath();
    const auto text = [&] {
        const Observation observation = context.observe();
        return barText(format, {.poll = observation.poll, .menu = observation.menu, .program = program});
    };
    // Whatever comes of it, a bar that sees a failure shows nothing, or an alarm of its own.
    [[maybe_unused]] const ExitStatus ended =
        context.line().watch ? watchText(
                                   [&] {
                                       const std::string line = text();
                                       return Frame{.text = line + std::string(updateEnd(format)), .whatCounts = line};
                                   },
                                   "")
                             : print(text());
    return ExitStatus::done;
}

} // namespace menubar::ctl
