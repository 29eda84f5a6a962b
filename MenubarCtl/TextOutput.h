#pragma once

#include "MenubarApp/StatusMenu/StatusPoll.h"
#include "MenubarCtl/Look.h"

#include <cstddef>
#include <string>
#include <vector>

namespace menubar::ctl {

/// What people read in a terminal. No control character of the status file gets through. Pure.

/// What `status` prints: the state, the configuration, notices, the item, and where the file is. Lines are not cut.
[[nodiscard]] std::string statusText(const StatusPoll& poll, const std::string& statusFile, const TimeZone& timeZone,
                                     Styling styling);

/// The item as the menu bar shows it, and the separator below it.
[[nodiscard]] std::vector<std::string> headLines(const StatusItemPresentation& presentation, const TextStyle& style);

/// One item of the menu. A check mark stands before a checked item, a key equivalent at the right edge; disabled items
/// are dimmed.
[[nodiscard]] std::string menuItemLine(const MenuItem& item, const StatusMenu& menu, const TextStyle& style);

/// What `menu` prints, line by line: `headLines`, then the items. Where the style cuts, none is wider than its columns.
[[nodiscard]] std::vector<std::string> menuLines(const StatusItemPresentation& presentation, const StatusMenu& menu,
                                                 const TextStyle& style);

} // namespace menubar::ctl
