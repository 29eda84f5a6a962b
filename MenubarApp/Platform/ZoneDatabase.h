#pragma once

#include "MenubarCore/System/FileManager.h"
#include "MenubarCore/Text/TimeZone.h"

#include <optional>
#include <string_view>

namespace menubar::ZoneDatabase {

/// Where systems keep the compiled zone database; macOS and Debian both update it as governments change their minds.
inline constexpr std::string_view root = "/usr/share/zoneinfo/";

/// The zone of an IANA name: the system's own, or ICU's where the system has none. Absent for a name that neither
/// holds. Reads one small file.
[[nodiscard]] std::optional<TimeZone> zone(std::string_view name, const FileManager& files);

} // namespace menubar::ZoneDatabase
