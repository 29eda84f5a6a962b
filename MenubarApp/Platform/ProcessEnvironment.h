#pragma once

#include "MenubarCore/System/Environment.h"

#include <string>

namespace menubar {

/// The process's environment variables; entries without a name or without "=" are left out. Not while another thread
/// changes them.
[[nodiscard]] Environment processEnvironment();

/// The home directory: `HOME` where it is set and not empty, otherwise the account's.
[[nodiscard]] std::string homeDirectory(const Environment& environment);

/// Makes the descriptors 0, 1 and 2 safe to work with, whatever this process was started with. Called once, before any
/// file, connection or thread is made.
///
/// One that is closed would become the next file or connection that is opened, and a line meant for standard error
/// would end up in it; it is the null device from here on, open for reading alone, so that writing to it still fails. A
/// reader that has gone is a failed write and no longer the end of the process (SIGPIPE is ignored).
void secureStandardDescriptors();

} // namespace menubar
