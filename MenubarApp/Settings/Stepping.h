#pragma once

#include "MenubarApp/View/Controls.h"
#include "MenubarCore/Settings/SettingsSchema.h"

#include <optional>
#include <string>
#include <string_view>

namespace menubar {

/// Stepping the values of settings. No state; any thread.

/// The number after one step within the setting's bounds (of a duration: never below 0). A number outside of them comes
/// back to the nearer bound when it is stepped towards it, and never moves further away.
[[nodiscard]] double steppedNumber(double value, const SettingSpec& spec, StepDirection direction);

/// The whole number that a duration begins with: 10 of "10m". Nothing when it begins otherwise or has more digits than
/// any sensible one.
[[nodiscard]] std::optional<double> leadingNumber(std::string_view duration);

/// The duration with its leading number stepped and all that follows it kept: "11m" from "10m", "2h 30m" from
/// "1h 30m". Nothing where there is no leading number.
[[nodiscard]] std::optional<std::string> steppedDuration(std::string_view duration, const SettingSpec& spec,
                                                         StepDirection direction);

} // namespace menubar
