#pragma once

#include "MenubarApp/StatusMenu/StatusPoll.h"
#include "MenubarCtl/CommandTable.h"

#include <string>

namespace menubar::ctl {

/// What a line for another program's status bar is made of.
struct BarInput {
    const StatusPoll& poll;
    const StatusMenu& menu;
    std::string program; ///< the path of this program, for a bar whose menu runs it; empty when it is not known
};

/// One update of a bar, lines with their line feeds: the sign of the item, the percentage of the worst session (also
/// where the item is icon only), how many sessions need input; for some formats a tooltip or the menu. Nothing from
/// outside is in the line itself, and where anything is, it is escaped for its reader. Pure.
[[nodiscard]] std::string barText(BarFormat format, const BarInput& input);

/// What stands after each update where several are written to one reader; empty for most.
[[nodiscard]] std::string_view updateEnd(BarFormat format);

} // namespace menubar::ctl
