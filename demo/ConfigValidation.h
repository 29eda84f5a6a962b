#pragma once

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Settings/ValidateOutput.h"
#include "MenubarCore/System/FileManager.h"

#include <expected>
#include <string>
#include <vector>

namespace menubar::demo {

/// The keys of the config file at `path`, or one line that says why they cannot be read.
[[nodiscard]] std::expected<JSONValue::Object, std::string> readConfig(const std::string& path,
                                                                       const FileManager& files);

/// All that is wrong with a config file: keys that are not settings, values of the wrong type or out of range, and
/// settings that contradict one another. None when the daemon would run with it.
[[nodiscard]] std::vector<ValidationIssue> configIssues(const JSONValue::Object& config);

/// What `config validate PATH --json` prints.
[[nodiscard]] JSONValue validationDocument(const std::vector<ValidationIssue>& issues);

} // namespace menubar::demo
