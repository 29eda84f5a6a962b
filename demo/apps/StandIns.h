#pragma once

#include "MenubarApp/Commands/SystemTools.h"

namespace menubar::demo {

/// The stand-ins in place of the system's programs; `cmux` is found by PATH alone, so that a real one at a fixed place
/// is left in peace.
[[nodiscard]] SystemTools standIns();

} // namespace menubar::demo
