#pragma once

#include "MenubarCore/Status/FileManager.h"

#include <span>
#include <string>

namespace menubar::ctl {

/// The whole program but for where its arguments come from; gives the process's exit status. `arguments` are those
/// after the program's name.
[[nodiscard]] int run(std::span<const std::string> arguments, const Environment& environment);

} // namespace menubar::ctl
