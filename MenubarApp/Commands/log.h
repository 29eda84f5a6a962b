#pragma once

#include <functional>
#include <string_view>

namespace menubar {

/// Writes one diagnostic line to standard error: "ostrel-menubar: ", the message, a line feed, in one write. Line feeds
/// and carriage returns inside the message become "\n" and "\r", so that no message can look like two lines;
/// what is ill-formed UTF-8 becomes U+FFFD, and on a terminal so does every character that it would obey. Never fails
/// visibly. Any thread.
void log(std::string_view message);

/// Takes diagnostic lines: `log`, or what a test or the command line puts in its place. Called on any thread.
using Log = std::function<void(std::string_view)>;

} // namespace menubar
