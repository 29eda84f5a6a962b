#include "MenubarCtl/LimitedRun.h"

#include "MenubarApp/Commands/ChildProcess.h"
#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarCore/Text/Case.h"
#include "MenubarCore/Text/CodePoints.h"

#include <system_error>

namespace menubar::ctl {

Answer runWithin(std::chrono::milliseconds limit, const std::string& executable,
                 const std::vector<std::string>& arguments) {
    using Steady = std::chrono::steady_clock;
    const auto start = Steady::now();
    const auto ended = ChildProcess::run(executable, arguments, processEnvironment(), limit);
    Answer answer;
    answer.took = std::chrono::duration_cast<std::chrono::milliseconds>(Steady::now() - start);
    if (!ended) {
        answer.result.status = CommandResult::notStarted;
        answer.result.stderr_ = std::generic_category().message(ended.error().error);
        return answer;
    }
    answer.isOverdue = ended->isOverdue;
    answer.result = {.status = ended->status,
                     .stdout_ = wellFormed(trimmed(ended->standardOutput)),
                     .stderr_ = wellFormed(trimmed(ended->standardError))};
    return answer;
}

} // namespace menubar::ctl
