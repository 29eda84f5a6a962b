#include "MenubarApp/Commands/CommandRunner.h"

#include "MenubarApp/Commands/ChildProcess.h"
#include "MenubarApp/Platform/MainLoop.h"
#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarCore/Text/Case.h"
#include "MenubarCore/Text/CodePoints.h"
#include "MenubarCore/Text/Join.h"

#include <string_view>
#include <system_error>
#include <utility>

namespace menubar::CommandRunner {

namespace {

/// Trimmed first: a repaired text has the same ends, and there is less to repair.
std::string decoded(std::string_view bytes) {
    const std::string_view text = trimmed(bytes);
    return isAscii(text) ? std::string(text) : wellFormed(text);
}

std::string logLine(const CommandResult& result, const std::string& commandLine) {
    if (result.status == 0) {
        return "ok: " + commandLine;
    }
    std::string line = "exit " + std::to_string(result.status) + ": " + commandLine;
    if (!result.stderr_.empty()) {
        line += " -- " + result.stderr_;
    }
    return line;
}

std::string describe(const ChildProcess::Failure& failure, const std::string& executable) {
    const bool isLaunch = failure.step == ChildProcess::Failure::Step::launch;
    return (isLaunch ? "failed to launch " : "failed to wait for ") + executable + ": " +
           std::generic_category().message(failure.error);
}

} // namespace

CommandResult runSync(const std::string& executable, const std::vector<std::string>& arguments,
                      const Environment& extraEnvironment, const Log& log) {
    Environment environment = extraEnvironment;
    environment.merge(processEnvironment()); // keeps what is there
    const auto ended = ChildProcess::run(executable, arguments, environment);
    if (!ended) {
        CommandResult result{
            .status = CommandResult::notStarted, .stdout_ = {}, .stderr_ = describe(ended.error(), executable)};
        log(result.stderr_);
        return result;
    }
    CommandResult result{
        .status = ended->status, .stdout_ = decoded(ended->standardOutput), .stderr_ = decoded(ended->standardError)};
    log(logLine(result, commandLine(executable, arguments)));
    return result;
}

void run(MainLoop& mainLoop, std::string executable, std::vector<std::string> arguments, Environment extraEnvironment,
         CommandCompletion completion, Log log) {
    mainLoop.runInBackground([&mainLoop, executable = std::move(executable), arguments = std::move(arguments),
                              extraEnvironment = std::move(extraEnvironment), completion = std::move(completion),
                              log = std::move(log)] {
        CommandResult result = runSync(executable, arguments, extraEnvironment, log);
        if (completion) {
            mainLoop.post([completion, result = std::move(result)] { completion(result); });
        }
    });
}

} // namespace menubar::CommandRunner
