#pragma once

#include "MenubarCore/System/Environment.h"
#include "MenubarCore/System/FileManager.h"

#include <optional>
#include <string_view>

namespace menubar::ctl {

/// A stored preference of the app (domain "ostrel-menubar") when there is one and it is a bool. The build selects how
/// it is read: through the system's preferences on macOS, from the desktop app's own file on Debian.
[[nodiscard]] std::optional<bool> storedBool(std::string_view key, const Environment& environment,
                                             const FileManager& files);

} // namespace menubar::ctl
