#pragma once

namespace menubar {

/// What the two systems do each in their own way to an open file. Both return 0 or the system's error number. Any
/// thread.

/// Gives `to` the extended attributes and the access control list of `from`, and no others. The list is insisted on;
/// attributes that only the system itself may set (security labels, marks of provenance) are tried, and on macOS, which
/// does not say which ones it keeps to itself, so are all the others.
[[nodiscard]] int copyExtendedAttributes(int from, int to);

/// Waits until the file's, or directory's, content is on the disk itself, not only in its cache. A file system that
/// cannot tell is no error.
[[nodiscard]] int flushToDisk(int fd);

} // namespace menubar
