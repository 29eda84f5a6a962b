// The app as people get it, but for the outside programs: those are the stand-ins. And it looks at the status file as
// often as it is told.

#include "MenubarApp/AppKit/runApplication.h"

#include "demo/apps/StandIns.h"

#include <cstdlib>

int main() {
    const char* const told = std::getenv("OSTREL_DEMO_POLL_MS");
    return menubar::runApplication(menubar::demo::standIns(), told == nullptr
                                                                  ? menubar::StatusMenuController::pollInterval
                                                                  : std::chrono::milliseconds(std::atoi(told)));
}
