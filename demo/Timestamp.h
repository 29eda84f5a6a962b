#pragma once

#include "MenubarCore/Text/Date.h"

#include <string>

namespace menubar::demo {

/// "2025-03-04T10:15:30.250Z": UTC, always three fraction digits, the rest cut. Years 0001 to 9999.
[[nodiscard]] std::string timestampText(Date date);

} // namespace menubar::demo
