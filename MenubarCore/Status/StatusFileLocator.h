#pragma once

#include "MenubarCore/JSON/DecodingError.h"
#include "MenubarCore/Status/StatusSnapshot.h"
#include "MenubarCore/System/Environment.h"
#include "MenubarCore/System/FileManager.h"

#include <string>
#include <string_view>

namespace menubar {

/// Where the status file is, and one read of it. Pure but for what the `FileManager` does.
namespace StatusFileLocator {

inline constexpr std::string_view environmentKey = "OSTREL_STATUS_FILE";

/// The variable's value with a leading "~" or "~/" expanded to `home` when it is set and not empty ("~user/x" stays
/// as it is), otherwise `home` + "/.local/state/ostrel/status.json" by plain concatenation.
[[nodiscard]] std::string path(const Environment& environment, std::string_view home);

/// Reads and decodes the whole file. Blocks for the read; never waits for a FIFO or a device.
[[nodiscard]] StatusSnapshot load(const std::string& path, const FileManager& fileManager);

/// The reason text of a failed decode or read, one line.
[[nodiscard]] std::string describe(const DecodingError& error);
[[nodiscard]] std::string describe(const FileError& error);

} // namespace StatusFileLocator

} // namespace menubar
