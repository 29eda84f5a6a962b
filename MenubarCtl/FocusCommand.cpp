#include "MenubarApp/Commands/Cmux.h"
#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCtl/Commands.h"
#include "MenubarCtl/SessionMatch.h"

#include <optional>
#include <string>
#include <variant>

namespace menubar::ctl {

namespace {

/// Why there are no sessions to look among; nothing when the file was read.
std::optional<std::string> objection(const StatusSnapshot& snapshot, const std::string& path) {
    if (const auto* unreadable = std::get_if<StatusSnapshot::Unreadable>(&snapshot.storage())) {
        return unreadable->reason;
    }
    return snapshot.file() == nullptr ? std::optional("there is no status file at " + path) : std::nullopt;
}

} // namespace

ExitStatus runFocus(const Context& context) {
    const Observation observation = context.observe();
    if (const auto reason = objection(observation.poll.snapshot, context.paths().statusFile)) {
        return fail(*reason);
    }
    const auto& sessions = observation.menu.sessions;
    const auto session = context.line().waiting ? firstWaiting(sessions) : findSession(sessions, context.line().name);
    if (!session) {
        return fail(session.error());
    }
    const std::string workspace = (*session)->workspaceId.value_or("");
    if (workspace.empty()) {
        return fail("the session " + quoted((*session)->displayName()) + " is in no cmux workspace");
    }
    const auto cmux = Cmux::path(context.commands());
    if (!cmux) {
        return fail(Cmux::notFound(context.commands().tools));
    }
    return finish("cmux", Cmux::focusSync(context.commands(), *cmux, workspace, (*session)->surfaceId));
}

} // namespace menubar::ctl
