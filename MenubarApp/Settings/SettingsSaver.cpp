#include "MenubarApp/Settings/SettingsSaver.h"

#include "MenubarApp/Platform/MainLoop.h"
#include "MenubarApp/Settings/SaveFiles.h"
#include "MenubarCore/Settings/DebugText.h"
#include "MenubarCore/Text/Join.h"

#include <algorithm>
#include <ranges>
#include <utility>

#include <unistd.h>

namespace menubar {

namespace {

/// What is said of a locked field belongs to no field: it cannot be edited there, and a later save may well pass.
SaveOutcome withoutLockedFields(SaveOutcome outcome, const SettingsForm& form) {
    const auto* rejected = outcome.rejected();
    if (rejected == nullptr) {
        return outcome;
    }
    SaveOutcome::Rejected result{.fields = {}, .general = rejected->general};
    for (const auto& [name, message] : rejected->fields) {
        const SettingField* field = form.field(name);
        if (field == nullptr || !field->isLockedByFlag) {
            result.fields.emplace(name, message);
        } else if (std::ranges::find(result.general, message) == result.general.end()) {
            result.general.push_back(message);
        }
    }
    return result;
}

/// Blocks; any thread.
SaveReport runPipeline(const RunCommand& run, const Log& log, const SaveRequest& request) {
    auto target = followLinks(request.path);
    if (!target) {
        return {.outcome = SaveOutcome::WriteFailed{std::move(target.error().message)}};
    }
    SaveFiles files(*target, request.loaded, log);
    const auto validate = [&](const std::string& candidate) -> CommandOutcome {
        CommandResult result =
            run(request.command.executable, request.command.arguments({"config", "validate", candidate, "--json"}));
        return {.status = result.status, .stdout_ = std::move(result.stdout_), .stderr_ = std::move(result.stderr_)};
    };
    SaveOutcome outcome = SavePipeline::save(request.form, *target, files.environment(validate), ::getpid());
    return {.outcome = withoutLockedFields(std::move(outcome), request.form),
            .foundChange = files.foundChange(),
            .placed = files.placed()};
}

} // namespace

SettingsSaver::SettingsSaver(MainLoop& mainLoop, RunCommand run, Log log)
    : m_mainLoop(mainLoop), m_run(std::move(run)), m_log(std::move(log)) {}

void SettingsSaver::save(SaveRequest request, std::function<void(const SaveRequest&, const SaveReport&)> done) {
    *m_waitingFor = request.command.describe({"config", "validate"});
    m_mainLoop.runInBackground([&mainLoop = m_mainLoop, run = m_run, log = m_log, waitingFor = m_waitingFor,
                                request = std::make_shared<const SaveRequest>(std::move(request)),
                                done = std::move(done)] {
        mainLoop.post([waitingFor, request, report = runPipeline(run, log, *request), done] {
            waitingFor->reset();
            done(*request, report);
        });
    });
}

std::string failureMessage(const SaveOutcome& outcome, const std::string& path) {
    if (const auto* rejected = outcome.rejected()) {
        const std::string names = joined(std::views::keys(rejected->fields), ", ");
        return names.empty() ? "The daemon rejected the file." : "The daemon rejected the file; see " + names + ".";
    }
    if (const auto* failed = std::get_if<SaveOutcome::CommandFailed>(&outcome.storage())) {
        return "Could not run config validate: " + failed->message;
    }
    if (const auto* failed = std::get_if<SaveOutcome::WriteFailed>(&outcome.storage())) {
        return "Could not write " + path + ": " + failed->message;
    }
    return "Fix the highlighted fields first.";
}

std::string logLine(const SaveOutcome& outcome, const std::string& path) {
    if (const auto* rejected = outcome.rejected()) {
        return "settings rejected by config validate: fields=" + debugText(rejected->fields) +
               " general=" + debugText(rejected->general);
    }
    if (const auto* invalid = std::get_if<SaveOutcome::InvalidLocally>(&outcome.storage())) {
        return "settings not saved: local validation failed " + debugText(invalid->errors);
    }
    if (const auto* failed = std::get_if<SaveOutcome::CommandFailed>(&outcome.storage())) {
        return "settings not saved: " + failed->message;
    }
    if (const auto* failed = std::get_if<SaveOutcome::WriteFailed>(&outcome.storage())) {
        return "settings not saved: " + failed->message;
    }
    return "settings saved to " + path;
}

} // namespace menubar
