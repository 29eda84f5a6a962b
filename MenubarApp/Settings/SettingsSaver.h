#pragma once

#include "MenubarApp/Commands/CommandRunner.h"
#include "MenubarApp/Commands/log.h"
#include "MenubarCore/Daemon/LaunchAgentCommand.h"
#include "MenubarCore/Settings/SavePipeline.h"
#include "MenubarCore/Settings/SettingsForm.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace menubar {

class MainLoop;

/// Runs a program with these arguments and waits for its end. Any thread.
using RunCommand =
    std::function<CommandResult(const std::string& executable, const std::vector<std::string>& arguments)>;

/// How a save of the config file ended.
struct SaveReport {
    SaveOutcome outcome;
    bool foundChange = false;            ///< refused, for another program has changed the file since it was loaded
    std::optional<std::string> placed{}; ///< what the file holds now, where the save has put it there
};

/// What is to be written, and where.
struct SaveRequest {
    LaunchAgentCommand command; ///< validates the candidate
    SettingsForm form;
    std::string path;                  ///< of the config file; a link there is followed
    std::optional<std::string> loaded; ///< the content that the form's baseline was read from; nothing: no file
};

/// Runs the save pipeline on the real file, in the background and for one save at a time. Main thread.
class SettingsSaver {
public:
    SettingsSaver(MainLoop& mainLoop, RunCommand run, Log log);

    // Events from the model

    /// Not while a save is under way. `done` is called on the main thread, also when this object has gone by then.
    void save(SaveRequest request, std::function<void(const SaveRequest&, const SaveReport&)> done);

    // State for the model

    /// The command line that a save under way waits for; nothing when there is none.
    [[nodiscard]] const std::optional<std::string>& waitingFor() const { return *m_waitingFor; }

private:
    MainLoop& m_mainLoop;
    const RunCommand m_run;
    const Log m_log;
    std::shared_ptr<std::optional<std::string>> m_waitingFor = std::make_shared<std::optional<std::string>>();
};

/// What the window says of a save that has not brought the file into place.
[[nodiscard]] std::string failureMessage(const SaveOutcome& outcome, const std::string& path);

/// What the log says of a save.
[[nodiscard]] std::string logLine(const SaveOutcome& outcome, const std::string& path);

} // namespace menubar
