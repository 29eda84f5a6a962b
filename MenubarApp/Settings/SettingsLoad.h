#pragma once

#include "MenubarApp/Commands/CommandRunner.h"
#include "MenubarCore/Daemon/LaunchAgentCommand.h"
#include "MenubarCore/Settings/SettingsForm.h"
#include "MenubarCore/System/FileManager.h"

#include <expected>
#include <optional>
#include <string>

namespace menubar {

/// Why the settings cannot be shown, in texts for people; the detail has several lines.
struct SettingsLoadFailure {
    std::string title;
    std::string detail;

    bool operator==(const SettingsLoadFailure&) const = default;
};

/// The settings as the daemon's schema and the config file describe them.
struct LoadedSettings {
    SettingsForm form;
    std::optional<std::string> fileContent; ///< what the form was read from; nothing when there is no file
};

/// How a load ended.
struct LoadReport {
    std::expected<LoadedSettings, SettingsLoadFailure> settings;
    std::optional<bool> configFileExists{}; ///< nothing where it failed before it came to the file
};

/// No daemon command line was found.
[[nodiscard]] SettingsLoadFailure commandNotFound();

/// Makes sense of what `config schema` printed, then reads the config file. Blocks; any thread.
[[nodiscard]] LoadReport loadSettings(const LaunchAgentCommand& command, const CommandResult& schema,
                                      const std::string& configPath, const FileManager& files);

} // namespace menubar
