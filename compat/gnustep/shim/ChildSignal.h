#pragma once

namespace menubar {

/// Whose child processes are whose.
namespace ChildSignal {

/// Keeps GNUstep from waiting for children that are not its own. Its task class, once anything uses it (the pasteboard
/// does), answers SIGCHLD by collecting every child that has ended, and then nobody else learns how it ended. It still
/// collects its own children when asked about them. Main thread, before any child is started.
void keepToOurselves();

} // namespace ChildSignal

} // namespace menubar
