#pragma once

#include "MenubarCore/System/Environment.h"
#include "MenubarCtl/CommandTable.h"

#include <cstddef>
#include <expected>
#include <string_view>

namespace menubar::ctl {

/// How much a text may be dressed up with escape sequences.
enum class Styling {
    plain,   ///< no escape sequence at all: not a terminal, or a dumb one
    weights, ///< dim and bold, no colours
    colours,
};

struct TerminalSize {
    std::size_t columns = 80; ///< above 0
    std::size_t rows = 24;    ///< above 0

    bool operator==(const TerminalSize&) const = default;
};

[[nodiscard]] bool isTerminal(int descriptor);

/// The size of the terminal that is open there; 80 columns where it is none or does not tell.
[[nodiscard]] TerminalSize terminalSize(int descriptor);

/// Whether escape sequences move its cursor: a terminal whose `TERM` is not "dumb".
[[nodiscard]] bool isScreen(int descriptor, const Environment& environment);

/// What suits a text written there. The choice of the command line goes first; then `NO_COLOR` not empty forbids
/// colours, and `CLICOLOR_FORCE` not empty and not "0" demands them; then a terminal that is not dumb gets them. Where
/// they are forbidden a terminal still gets bold and dim.
[[nodiscard]] Styling stylingFor(bool isTerminal, const Environment& environment,
                                 ColorChoice choice = ColorChoice::automatic);

/// Writes everything, waiting where the descriptor does not. The error is the system's number; EPIPE says that the
/// reader has gone (SIGPIPE must be ignored).
[[nodiscard]] std::expected<void, int> writeAll(int descriptor, std::string_view bytes);

} // namespace menubar::ctl
