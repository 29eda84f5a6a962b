#pragma once

#include "MenubarCore/Settings/SettingsForm.h"

#include <expected>
#include <span>
#include <string>

namespace menubar::ctl {

/// Why the VALUEs of `settings set` do not make a value of the setting.
enum class ArgumentError {
    wrongNumber, ///< of VALUEs: the command line is wrong
    notReadable, ///< as the kind of value that the setting's control takes
};

/// Whether the setting takes any number of VALUEs, each of them one item.
[[nodiscard]] bool takesItems(const SettingSpec& spec);

/// Makes the edit that the VALUEs stand for: for a toggle on, true, yes, 1 or off, false, no, 0, in any case; for a
/// number or a percentage a number, the latter with or without "%"; for a list or a choice of several each VALUE is one
/// item; for everything else the VALUE is what a person would type into the field. The form's rules are checked by the
/// form. Pure.
[[nodiscard]] std::expected<void, ArgumentError> applyArguments(SettingsForm& form, const SettingField& field,
                                                                std::span<const std::string> values);

} // namespace menubar::ctl
