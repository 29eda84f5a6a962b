#pragma once

#include <string>
#include <string_view>

namespace menubar::ctl {

/// What `help` prints, in lines of at most 80 columns: about a command, about all commands with that first word, or,
/// for an empty topic, about the whole. Pure.
[[nodiscard]] std::string helpText(std::string_view topic);

/// Of this program and of the app that it comes with.
extern const std::string_view programVersion;

} // namespace menubar::ctl
