#include "tests/support/Programs.h"

namespace menubar::testing_support {

// The build defines both for this file alone, so that no other is compiled anew in another folder.
const std::string testChild = MENUBAR_TEST_CHILD;
const std::string standInFolder = MENUBAR_DEMO_TOOLS;

} // namespace menubar::testing_support
