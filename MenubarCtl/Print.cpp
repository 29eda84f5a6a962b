#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCtl/Commands.h"
#include "MenubarCtl/JSONOutput.h"
#include "MenubarCtl/Terminal.h"

#include <cerrno>
#include <string>
#include <system_error>

#include <unistd.h>

namespace menubar::ctl {

ExitStatus print(std::string_view bytes) {
    return finishWriting(writeAll(STDOUT_FILENO, bytes));
}

ExitStatus finishWriting(const std::expected<void, int>& written) {
    if (written || written.error() == EPIPE) {
        return ExitStatus::done;
    }
    complain("cannot write the output: " + std::generic_category().message(written.error()));
    return ExitStatus::failed;
}

ExitStatus printDocument(const JSONValue& document) {
    const auto text = documentText(document);
    if (!text) {
        complain(describe(text.error()));
        return ExitStatus::failed;
    }
    return print(isTerminal(STDOUT_FILENO) ? terminalSafe(*text) : *text);
}

void complain(std::string_view message) {
    // Where standard error cannot be written either, the exit status alone has to tell.
    [[maybe_unused]] const auto written = writeAll(STDERR_FILENO, "ostrel-menubarctl: " + displayText(message) + "\n");
}

ExitStatus refuseUsage(const UsageError& error) {
    [[maybe_unused]] const auto written = writeAll(STDERR_FILENO, "ostrel-menubarctl: " + error.text() + "\n");
    return ExitStatus::wrongUsage;
}

ExitStatus fail(std::string_view message) {
    complain(message);
    return ExitStatus::failed;
}

ExitStatus finish(std::string_view program, const CommandResult& result) {
    if (result.status == 0) {
        return ExitStatus::done;
    }
    if (result.status == CommandResult::notStarted) {
        return fail(result.stderr_);
    }
    std::string message = std::string(program) + " failed with status " + std::to_string(result.status);
    if (!result.stderr_.empty()) {
        message += ": " + result.stderr_;
    }
    return fail(message);
}

} // namespace menubar::ctl
