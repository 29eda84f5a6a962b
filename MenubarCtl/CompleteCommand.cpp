#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCtl/Commands.h"
#include "MenubarCtl/Completion.h"
#include "MenubarCtl/Doctor.h"

#include <algorithm>
#include <chrono>

namespace menubar::ctl {

namespace {

/// A session by its name, where that is one that nothing else has, that a terminal can show and that is taken for no
/// option; else by an id.
std::vector<Candidate> sessionCandidates(const Context& context) {
    const Observation observation = context.observe();
    const auto& sessions = observation.menu.sessions;
    std::vector<Candidate> candidates;
    for (const MenuItem& item : observation.menu.items) {
        const SessionStatus* session = observation.menu.sessionByTag(item.tag);
        if (session == nullptr) {
            continue;
        }
        const std::string name(session->displayName());
        const auto isName = [&](const SessionStatus& other) { return other.displayName() == name; };
        const bool isUsable =
            std::ranges::count_if(sessions, isName) == 1 && !name.starts_with('-') && displayText(name) == name;
        candidates.push_back({.text = isUsable ? name : session->shortId.value_or(session->sessionId.value_or("")),
                              .description = item.title});
    }
    return candidates;
}

/// Nobody waits for a daemon that does not answer when a key was pressed.
std::vector<SettingCandidate> settingCandidates(const Context& context) {
    constexpr std::chrono::milliseconds limit{2000};
    const auto command = findCommand(context.environment(), context.commands().home, context.paths(),
                                     PosixFileManager(), PosixFileManager::isExecutableFile);
    if (!command) {
        return {};
    }
    const auto schema = schemaFrom(runWithin(limit, command->executable, command->arguments({"config", "schema"})));
    std::vector<SettingCandidate> candidates;
    for (const SettingSpec& spec : schema ? schema->settings() : std::vector<SettingSpec>()) {
        const bool isToggle = spec.control.kind() == SettingControl::Kind::toggle;
        candidates.push_back({.setting = {.text = spec.name, .description = spec.help},
                              .values = isToggle ? std::vector<std::string>{"on", "off"} : spec.values});
    }
    return candidates;
}

} // namespace

ExitStatus runComplete(const Context& context) {
    return print(completionLines(
        completionsOf(context.line().values, {.sessions = [&] { return sessionCandidates(context); },
                                              .settings = [&] { return settingCandidates(context); }})));
}

} // namespace menubar::ctl
