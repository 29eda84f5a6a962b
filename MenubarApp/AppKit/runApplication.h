#pragma once

#include "MenubarApp/Commands/SystemTools.h"
#include "MenubarApp/StatusMenu/StatusMenuController.h"

#include <chrono>

namespace menubar {

/// The app from launch to quit; gives the process's exit status. Called by a main function, once, with the system's
/// tools and the product's interval; the demo has others.
[[nodiscard]] int runApplication(const SystemTools& tools = {},
                                 std::chrono::milliseconds pollInterval = StatusMenuController::pollInterval);

} // namespace menubar
