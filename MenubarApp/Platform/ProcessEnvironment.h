#pragma once

#include "MenubarCore/System/Environment.h"

#include <string>

namespace menubar {

/// The process's environment variables; entries without a name or without "=" are left out. Not while another thread
/// changes them.
[[nodiscard]] Environment processEnvironment();

/// The home directory: `HOME` where it is set and not empty, otherwise the account's.
[[nodiscard]] std::string homeDirectory(const Environment& environment);

} // namespace menubar
