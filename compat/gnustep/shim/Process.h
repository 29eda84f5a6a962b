#pragma once

/// What GNUstep does to the process behind the app's back, put right. Main thread.
namespace menubar::Process {

/// SIGTERM, SIGINT and SIGHUP ask the application to terminate, from the main loop, also while a menu is tracked. A
/// second signal kills. GNUstep would terminate inside its own signal handler, which deadlocks when a lock is held, and
/// forgets a signal that comes while it starts.
///
/// `hold` is for before the application object exists: what comes from now on waits, also in every thread to come.
void holdTerminationSignals();
void handleTerminationSignals();

/// GNUstep makes the locks of its objects when the first thread of its own or of somebody else's begins, and in that
/// thread: the main thread may be inside what they are to guard. Here it waits meanwhile. Before there are any threads,
/// and once the folders and defaults are where they should be.
void becomeMultiThreaded();

/// GNUstep's task class, once anything uses it (the pasteboard does), answers SIGCHLD by collecting every child that
/// has ended, and then nobody else learns how it ended. It still collects its own children when asked about them.
/// Before any child is started.
void keepChildren();

/// Starts the process that pasteboards are kept in, if there is none, and waits until it answers: a fifth of a second,
/// a whole one at most. GNUstep starts it at its first use and then holds the app for 5 seconds, waiting for a
/// distributed notification, which this app does without. It ends by itself when nobody uses it.
void startPasteboardServer();

} // namespace menubar::Process
