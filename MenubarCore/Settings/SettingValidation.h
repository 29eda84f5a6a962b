#pragma once

#include "MenubarCore/Settings/SettingValue.h"

#include <optional>
#include <string>

namespace menubar {

class PatternChecker;

/// The first rule of the schema that `value` breaks, as a message for people; nothing when it keeps them all. Patterns
/// that cannot be used, or have used up what `patterns` allows, check nothing: the daemon validates every file anyway.
[[nodiscard]] std::optional<std::string> validationError(const SettingSpec& spec, const SettingValue& value,
                                                         PatternChecker& patterns);

/// What is said of a value of another kind than the control's: the first of its messages. Empty for a control that is
/// not known, which takes every value.
[[nodiscard]] std::string wrongKindError(const SettingSpec& spec);

} // namespace menubar
