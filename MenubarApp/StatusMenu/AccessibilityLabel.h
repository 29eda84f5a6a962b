#pragma once

#include "MenubarCore/Menu/StatusItemPresentation.h"

#include <string>

namespace menubar {

/// What a screen reader says of the status item: product, percentage when it is shown, state; for example
/// "ostrel, 72%, Daemon running (last poll 3s ago)".
[[nodiscard]] std::string accessibilityLabel(const StatusItemPresentation& presentation);

} // namespace menubar
