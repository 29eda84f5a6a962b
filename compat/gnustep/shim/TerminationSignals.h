#pragma once

namespace menubar {

/// SIGTERM, SIGINT and SIGHUP ask the application to terminate, from the main loop, also while a menu is tracked. A
/// second signal kills.
///
/// GNUstep would terminate inside its own signal handler, which deadlocks when a lock is held, and forgets a signal
/// that comes while it starts. Main thread.
namespace TerminationSignals {

/// Before the application object exists: what comes from now on waits.
void hold();

/// Once it exists, and has installed the handlers that these replace.
void handle();

} // namespace TerminationSignals

} // namespace menubar
