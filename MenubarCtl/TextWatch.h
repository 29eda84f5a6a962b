#pragma once

#include "MenubarCtl/Commands.h"

#include <functional>
#include <string>

namespace menubar::ctl {

/// One picture of what is watched.
struct Frame {
    std::string text; ///< lines, each with its line feed

    /// What has to differ from the picture before for this one to be written.
    std::string whatCounts;
};

/// Writes frame after frame as the daemon's file changes, until interrupted or until the reader goes: `next` is asked
/// at once and then every 3 seconds. `between` is written between two frames. The frame that was written last is not
/// written again.
[[nodiscard]] ExitStatus watchText(const std::function<Frame()>& next, std::string_view between);

} // namespace menubar::ctl
