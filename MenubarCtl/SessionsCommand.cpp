#include "MenubarCtl/Commands.h"
#include "MenubarCtl/JSONOutput.h"
#include "MenubarCtl/SessionsOutput.h"
#include "MenubarCtl/TextWatch.h"

#include <string>

#include <unistd.h>

namespace menubar::ctl {

namespace {

std::string textOf(const Context& context, const Observation& observation) {
    std::string text;
    for (const std::string& line : sessionLines(observation.menu.sessions, observation.now, context.outputStyle())) {
        text += line + "\n";
    }
    return text;
}

/// What is not a session, and yet has to be said: why there are none, or that they are old. Empty for nothing.
std::string remark(const Observation& observation) {
    const DaemonState& state = observation.poll.state;
    if (!state.isRunning()) {
        return state.title(observation.timeZone);
    }
    return observation.menu.sessions.empty() ? "no sessions" : "";
}

/// The document but for what grows older by itself.
std::string whatCountsOf(const JSONValue& document) {
    JSONValue::Object counted = *document.objectValue();
    JSONValue::Object state = *counted.at("state").objectValue();
    state.erase("pollAge");
    state.erase("title");
    counted["state"] = std::move(state);
    return JSONValue(std::move(counted)).compactText();
}

Frame frameOf(const Context& context) {
    const Observation observation = context.observe();
    if (!context.line().json) {
        const std::string text = textOf(context, observation);
        const std::string said = text.empty() ? remark(observation) + "\n" : text;
        return {.text = said, .whatCounts = said};
    }
    const JSONValue document = sessionsDocument(observation.poll, observation.menu, observation.timeZone);
    const auto text = documentText(document);
    const std::string shown = text ? *text : std::string(describe(text.error())) + "\n";
    return {.text = isTerminal(STDOUT_FILENO) ? terminalSafe(shown) : shown, .whatCounts = whatCountsOf(document)};
}

} // namespace

ExitStatus runSessions(const Context& context) {
    const CommandLine& line = context.line();
    if (line.watch) {
        return watchText([&context] { return frameOf(context); }, line.json ? "" : "\n");
    }
    const Observation observation = context.observe();
    if (line.json) {
        return printDocument(sessionsDocument(observation.poll, observation.menu, observation.timeZone));
    }
    if (const std::string text = remark(observation); !text.empty()) {
        complain(text);
    }
    return print(textOf(context, observation));
}

} // namespace menubar::ctl
