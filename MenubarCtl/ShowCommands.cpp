#include "MenubarCore/Menu/ConfigNotices.h"
#include "MenubarCtl/BarOutput.h"
#include "MenubarCtl/Commands.h"
#include "MenubarCtl/JSONOutput.h"
#include "MenubarCtl/SessionsOutput.h"
#include "MenubarCtl/TextOutput.h"
#include "MenubarCtl/TextWatch.h"
#include "MenubarCtl/ThisSystem.h"

#include <string>

#include <unistd.h>

namespace menubar::ctl {

// The commands that print what was observed, once or again and again.

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

namespace {

std::string menuText(const Context& context, const Observation& observation) {
    return textOf(menuLines(observation.poll.presentation, observation.menu, context.outputStyle()));
}

} // namespace

ExitStatus runMenu(const Context& context) {
    if (context.line().watch && isScreen(STDOUT_FILENO, context.environment())) {
        return runMenuOnScreen(context);
    }
    if (context.line().watch) {
        // What a file or a dumb terminal gets: one picture below the other, each poll.
        return watchText(
            [&, count = 0]() mutable {
                return Frame{.text = menuText(context, context.observe()), .whatCounts = std::to_string(++count)};
            },
            "\n");
    }
    const Observation observation = context.observe();
    return context.line().json ? printDocument(menuDocument(observation.menu.items))
                               : print(menuText(context, observation));
}

namespace {

std::string sessionsText(const Context& context, const Observation& observation) {
    return textOf(sessionLines(observation.menu.sessions, observation.now, context.outputStyle()));
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
        const std::string text = sessionsText(context, observation);
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
    return print(sessionsText(context, observation));
}

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
