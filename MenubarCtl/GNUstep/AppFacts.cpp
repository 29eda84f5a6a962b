#include "MenubarCtl/AppFacts.h"

namespace menubar::ctl {

bool canFindApps() {
    return false; // here the app is a program like any other, in no bundle
}

std::vector<RunningApp> runningApps() {
    return {};
}

} // namespace menubar::ctl
