#pragma once

#include <string_view>

namespace menubar {

/// Writes one diagnostic line to standard error: "ostrel-menubar: ", the message, a line feed, in one write. Line feeds
/// and carriage returns inside the message become "\n" and "\r", so that no message can look like two lines. Never
/// fails visibly. Any thread.
void log(std::string_view message);

} // namespace menubar
