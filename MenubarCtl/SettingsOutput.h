#pragma once

#include "MenubarApp/Settings/SettingsModel.h"
#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCtl/Look.h"

#include <string>

namespace menubar::ctl {

/// What the `settings` commands print. The model is one that has loaded. Pure.

/// What `settings list --json` prints.
[[nodiscard]] JSONValue settingsDocument(const SettingsModel& model);

/// What `settings list` prints: the groups with a line for each setting (name, value, where it comes from, what is
/// wrong with it), then which file that is about. No control character of the schema or the file gets through. Where
/// the style cuts, a setting's line is no wider than its columns; the value gives way first.
[[nodiscard]] std::string settingsText(const SettingsModel& model, const TextStyle& style);

/// What `settings get` prints: the value as `settings set` takes it, each item of a list on a line of its own.
[[nodiscard]] std::string valueText(const SettingField& field);

/// What is said of a save that failed: the message, a line "NAME: message" for each field, each general message.
[[nodiscard]] std::string failureText(const std::string& message, const SaveOutcome& outcome);

} // namespace menubar::ctl
