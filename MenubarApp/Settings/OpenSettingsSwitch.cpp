#include "MenubarApp/Settings/OpenSettingsSwitch.h"

#include <string>

namespace menubar {

bool OpenSettingsSwitch::isOn(const Environment& environment) {
    const auto value = environment.find(std::string(environmentKey));
    return value != environment.end() && value->second == "1";
}

} // namespace menubar
