#include "MenubarCtl/Version.h"

// The build names the version; a compiler run by hand knows none.
#if !defined(MENUBAR_VERSION)
#define MENUBAR_VERSION "unversioned"
#endif

namespace menubar::ctl {

const std::string_view version = MENUBAR_VERSION;

} // namespace menubar::ctl
