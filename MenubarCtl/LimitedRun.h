#pragma once

#include "MenubarCtl/Doctor.h"

#include <chrono>
#include <string>
#include <vector>

namespace menubar::ctl {

/// Runs a program to its end, or kills it, and what it started, at the limit. Nothing is logged. Blocks; any thread.
[[nodiscard]] Answer runWithin(std::chrono::milliseconds limit, const std::string& executable,
                               const std::vector<std::string>& arguments);

} // namespace menubar::ctl
