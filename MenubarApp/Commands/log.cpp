#include "MenubarApp/Commands/log.h"

#include <cerrno>
#include <string>

#include <unistd.h>

namespace menubar {

void log(std::string_view message) {
    std::string line = "ostrel-menubar: ";
    line.reserve(line.size() + message.size() + 1);
    for (const char c : message) {
        if (c == '\n') {
            line += "\\n";
        } else if (c == '\r') {
            line += "\\r";
        } else {
            line += c;
        }
    }
    line += '\n';
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
