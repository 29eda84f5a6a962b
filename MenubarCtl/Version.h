#pragma once

#include <string_view>

namespace menubar::ctl {

/// Of this program and of the app that it comes with.
extern const std::string_view version;

} // namespace menubar::ctl
