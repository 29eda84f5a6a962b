// The command line as people get it, but for the outside programs: those are the stand-ins.

#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarCtl/Run.h"

#include "demo/apps/StandIns.h"

#include <string>
#include <vector>

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    return menubar::ctl::run(arguments, menubar::processEnvironment(), menubar::demo::standIns());
}
