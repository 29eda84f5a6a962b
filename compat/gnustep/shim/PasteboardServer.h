#pragma once

namespace menubar {

/// The process that GNUstep keeps pasteboards in; what is copied goes there. GNUstep starts it at its first use and
/// then holds the app for 5 seconds, waiting for a distributed notification, which this app does without.
namespace PasteboardServer {

/// Starts the server if there is none, and waits until it answers: a fifth of a second, a whole one at most. It ends
/// by itself when nobody uses it. Main thread.
void start();

} // namespace PasteboardServer

} // namespace menubar
