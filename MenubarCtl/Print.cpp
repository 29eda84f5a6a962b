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
    const auto written = writeAll(STDOUT_FILENO, bytes);
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
    static_cast<void>(writeAll(STDERR_FILENO, "ostrel-menubarctl: " + displayText(message) + "\n"));
}

} // namespace menubar::ctl
