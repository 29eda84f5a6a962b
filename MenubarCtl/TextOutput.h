#pragma once

#include "MenubarApp/StatusMenu/StatusPoll.h"
#include "MenubarCtl/Terminal.h"

#include <cstddef>
#include <string>
#include <vector>

namespace menubar::ctl {

/// What people read in a terminal. No control character of the status file gets through. Pure.

struct TextStyle {
    std::size_t columns = 80;
    Styling styling = Styling::plain;
};

/// What `status` prints: the state, the configuration, notices, the item, and where the file is. Lines are not cut.
[[nodiscard]] std::string statusText(const StatusPoll& poll, const std::string& statusFile, const TimeZone& timeZone,
                                     Styling styling);

/// What `menu` prints, line by line, none wider than `style.columns`: the item as the menu bar shows it, then the
/// menu's items. A check mark stands before a checked item, a key equivalent at the right edge; disabled items are
/// dimmed.
[[nodiscard]] std::vector<std::string> menuLines(const StatusItemPresentation& presentation, const StatusMenu& menu,
                                                 const TextStyle& style);

/// At most `rows` of the lines; when some are left out the last one kept makes room for their number.
[[nodiscard]] std::vector<std::string> clippedToRows(std::vector<std::string> lines, const TerminalSize& size,
                                                     Styling styling);

} // namespace menubar::ctl
