#include "MenubarApp/Commands/log.h"

#include "MenubarCore/Text/CodePoints.h"
#include "MenubarCore/Text/DisplayText.h"

#include <cerrno>
#include <string>

#include <unistd.h>

namespace menubar {

namespace {

std::string withoutLineBreaks(std::string_view message) {
    std::string text;
    text.reserve(message.size());
    for (const char c : message) {
        if (c == '\n') {
            text += "\\n";
        } else if (c == '\r') {
            text += "\\r";
        } else {
            text += c;
        }
    }
    return text;
}

} // namespace

void log(std::string_view message) {
    const std::string text = withoutLineBreaks(message);
    const bool isShown = ::isatty(STDERR_FILENO) == 1;
    const std::string line = "ostrel-menubar: " + (isShown ? displayText(text) : wellFormed(text)) + "\n";
    // One call writes the whole line. What a full pipe leaves over follows; any other failure has nobody to tell.
    std::string_view rest = line;
    while (!rest.empty()) {
        const ssize_t written = ::write(STDERR_FILENO, rest.data(), rest.size());
        if (written > 0) {
            rest.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            return;
        }
    }
}

} // namespace menubar
