#pragma once

#include "MenubarCore/System/Environment.h"

#include <string_view>

namespace menubar {

/// The switch that opens the settings window at start, for scripted use.
namespace OpenSettingsSwitch {

inline constexpr std::string_view environmentKey = "OSTREL_MENUBAR_OPEN_SETTINGS";

/// Whether its value is exactly "1".
[[nodiscard]] bool isOn(const Environment& environment);

} // namespace OpenSettingsSwitch

} // namespace menubar
