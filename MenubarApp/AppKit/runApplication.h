#pragma once

#include "MenubarApp/Commands/SystemTools.h"

namespace menubar {

/// The app from launch to quit; gives the process's exit status. Called by a main function, once, with the system's
/// tools; the demo has others.
[[nodiscard]] int runApplication(const SystemTools& tools = {});

} // namespace menubar
