// The app as people get it, but for the outside programs: those are the stand-ins.

#include "MenubarApp/AppKit/runApplication.h"

#include "demo/apps/StandIns.h"

int main() {
    return menubar::runApplication(menubar::demo::standIns());
}
