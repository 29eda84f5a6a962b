#pragma once

#include <string>

/// Where the build put the programs that tests start.
namespace menubar::testing_support {

/// The program that does what its arguments say; see test_child.cpp.
extern const std::string testChild;

/// The folder of the stand-ins for `cmux`, `launchctl` and `osascript`.
extern const std::string standInFolder;

} // namespace menubar::testing_support
