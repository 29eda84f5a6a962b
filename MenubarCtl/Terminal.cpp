#include "MenubarCtl/Terminal.h"

#include <cerrno>

#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace menubar::ctl {

bool isTerminal(int descriptor) {
    return ::isatty(descriptor) == 1;
}

TerminalSize terminalSize(int descriptor) {
    TerminalSize size;
    winsize window{};
    if (::ioctl(descriptor, TIOCGWINSZ, &window) == 0) {
        size.columns = window.ws_col > 0 ? window.ws_col : size.columns;
        size.rows = window.ws_row > 0 ? window.ws_row : size.rows;
    }
    return size;
}

Styling stylingFor(bool isTerminal, const Environment& environment) {
    if (!isTerminal || variable(environment, "TERM") == "dumb") {
        return Styling::plain;
    }
    return variable(environment, "NO_COLOR").empty() ? Styling::colours : Styling::weights;
}

std::expected<void, int> writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            pollfd writable{.fd = descriptor, .events = POLLOUT, .revents = 0};
            ::poll(&writable, 1, -1);
        } else if (errno != EINTR) {
            return std::unexpected(errno);
        }
    }
    return {};
}

} // namespace menubar::ctl
