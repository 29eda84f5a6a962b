#pragma once

#include "MenubarCore/Settings/SettingsSchema.h"

#include <string_view>

namespace menubar::demo {

/// What `ostrel config schema` prints: the settings of such a daemon, with every kind of control and every hint that a
/// schema can give, and one control that the app does not know.
[[nodiscard]] std::string_view configSchemaDocument();

/// The same, decoded.
[[nodiscard]] const SettingsSchema& configSchema();

} // namespace menubar::demo
