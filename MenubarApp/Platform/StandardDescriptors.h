#pragma once

namespace menubar {

/// Makes the descriptors 0, 1 and 2 safe to work with, whatever this process was started with. Called once, before any
/// file, connection or thread is made.
///
/// One that is closed would become the next file or connection that is opened, and a line meant for standard error
/// would end up in it; it is the null device from here on, open for reading alone, so that writing to it still fails. A
/// reader that has gone is a failed write and no longer the end of the process (SIGPIPE is ignored).
void secureStandardDescriptors();

} // namespace menubar
