#pragma once

#include "MenubarApp/Commands/SystemTools.h"
#include "MenubarCore/System/Environment.h"

#include <span>
#include <string>

namespace menubar::ctl {

/// The whole program but for where its arguments come from; gives the process's exit status. `arguments` are those
/// after the program's name; `tools` are the system's, but in the demo.
[[nodiscard]] int run(std::span<const std::string> arguments, const Environment& environment,
                      const SystemTools& tools = {});

} // namespace menubar::ctl
