#pragma once

#include "MenubarCore/System/Environment.h"
#include "MenubarCore/System/FileManager.h"

#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace menubar::ctl {

/// A stored preference of the app (domain "ostrel-menubar") when there is one and it is a bool. The build selects how
/// it is read: through the system's preferences on macOS, from the desktop app's own file on Debian.
[[nodiscard]] std::optional<bool> storedBool(std::string_view key, const Environment& environment,
                                             const FileManager& files);

/// Stores it where the app sees it at its next poll. The error is one line for people.
[[nodiscard]] std::expected<void, std::string> storeBool(std::string_view key, bool value,
                                                         const Environment& environment, const FileManager& files);

} // namespace menubar::ctl
