#include "MenubarApp/Settings/SettingsSave.h"

#include "MenubarApp/Settings/SaveFiles.h"

#include <utility>

#include <unistd.h>

namespace menubar {

SaveReport saveSettings(const RunCommand& run, const LaunchAgentCommand& command, const SettingsForm& form,
                        const std::string& path, std::optional<std::string> loaded, const Log& log) {
    auto target = followLinks(path);
    if (!target) {
        return {.outcome = SaveOutcome::WriteFailed{std::move(target.error().message)}, .path = path};
    }
    SaveFiles files(*target, std::move(loaded), log);
    const auto validate = [&](const std::string& candidate) -> CommandOutcome {
        CommandResult result = run(command.executable, command.arguments({"config", "validate", candidate, "--json"}));
        return {.status = result.status, .stdout_ = std::move(result.stdout_), .stderr_ = std::move(result.stderr_)};
    };
    SaveOutcome outcome = SavePipeline::save(form, *target, files.environment(validate), ::getpid());
    return {.outcome = std::move(outcome), .path = path, .foundChange = files.foundChange(), .placed = files.placed()};
}

} // namespace menubar
