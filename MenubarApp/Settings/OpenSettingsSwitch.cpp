#include "MenubarApp/Settings/OpenSettingsSwitch.h"

namespace menubar {

bool OpenSettingsSwitch::isOn(const Environment& environment) {
    return variable(environment, environmentKey) == "1";
}

} // namespace menubar
