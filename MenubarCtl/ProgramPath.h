#pragma once

#include <string>

namespace menubar::ctl {

/// Where this program was started from, an absolute path with no link followed where the system tells it so; empty when
/// it does not tell. The build selects the system's way.
[[nodiscard]] std::string programPath();

} // namespace menubar::ctl
