#include "demo/apps/StandIns.h"

namespace menubar::demo {

SystemTools standIns() {
    return {.launchctl = MENUBAR_DEMO_TOOLS "/launchctl", .osascript = MENUBAR_DEMO_TOOLS "/osascript", .cmux = {}};
}

} // namespace menubar::demo
