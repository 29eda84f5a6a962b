#pragma once

#include "MenubarCore/System/Environment.h"

#include <functional>
#include <string>
#include <vector>

namespace menubar::ctl {

/// How a file is shown.
struct OpenPlan {
    std::vector<std::string> words; ///< the program and its arguments; empty when there is no way
    bool takesTerminal = false;     ///< whether it is read on this terminal
};

/// A file is read with $PAGER where that is set; else the system's opener takes it; else, and wherever an opener would
/// have no desktop to open it on, `less` reads it. A folder only the opener can show. No path is taken for an option or
/// for a pager's command. `isExecutable` is asked about paths.
[[nodiscard]] OpenPlan openPlan(const std::string& path, bool isFolder, const Environment& environment,
                                const std::function<bool(const std::string&)>& isExecutable);

} // namespace menubar::ctl
