#pragma once

#include "MenubarApp/Commands/CommandResult.h"
#include "MenubarApp/Commands/log.h"
#include "MenubarCore/Daemon/LaunchAgentCommand.h"
#include "MenubarCore/Settings/SavePipeline.h"
#include "MenubarCore/Settings/SettingsForm.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace menubar {

/// Runs a program with these arguments and waits for its end. Any thread.
using RunCommand =
    std::function<CommandResult(const std::string& executable, const std::vector<std::string>& arguments)>;

/// How a save of the config file ended.
struct SaveReport {
    SaveOutcome outcome;
    std::string path{};                  ///< of the config file, as it was asked for
    bool foundChange = false;            ///< refused, for another program has changed the file since it was loaded
    std::optional<std::string> placed{}; ///< what the file holds now, where the save has put it there
};

/// The save pipeline on the real file: a link at `path` is followed, the daemon validates the candidate. `loaded` is
/// the content that the form's baseline was read from; nothing when there was no file. Blocks; any thread, but one save
/// of a file at a time.
[[nodiscard]] SaveReport saveSettings(const RunCommand& run, const LaunchAgentCommand& command,
                                      const SettingsForm& form, const std::string& path,
                                      std::optional<std::string> loaded, const Log& log);

} // namespace menubar
