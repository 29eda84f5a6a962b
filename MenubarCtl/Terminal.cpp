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

bool isScreen(int descriptor, const Environment& environment) {
    return isTerminal(descriptor) && variable(environment, "TERM") != "dumb";
}

Styling stylingFor(bool isTerminal, const Environment& environment, ColorChoice choice) {
    const Styling weightsOrNone =
        isTerminal && variable(environment, "TERM") != "dumb" ? Styling::weights : Styling::plain;
    if (choice == ColorChoice::always) {
        return Styling::colours;
    }
    if (choice == ColorChoice::never || !variable(environment, "NO_COLOR").empty()) {
        return weightsOrNone;
    }
    if (const std::string_view force = variable(environment, "CLICOLOR_FORCE"); !force.empty() && force != "0") {
        return Styling::colours;
    }
    return weightsOrNone == Styling::weights ? Styling::colours : Styling::plain;
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
