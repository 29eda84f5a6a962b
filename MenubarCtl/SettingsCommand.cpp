#include "MenubarApp/Commands/CommandRunner.h"
#include "MenubarApp/Commands/SystemCommands.h"
#include "MenubarApp/Settings/SettingsModel.h"
#include "MenubarCore/Settings/SettingValidation.h"
#include "MenubarCore/Text/CodePoints.h"
#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCtl/CommandLine.h"
#include "MenubarCtl/Commands.h"
#include "MenubarCtl/InlineLoop.h"
#include "MenubarCtl/SettingArguments.h"
#include "MenubarCtl/SettingsOutput.h"
#include "MenubarCtl/Terminal.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include <unistd.h>

namespace menubar::ctl {

namespace {

/// What a terminal is not to obey is replaced there; a pipe gets every byte.
std::string shownAt(int descriptor, const std::string& text) {
    return isTerminal(descriptor) ? displayText(text, LineFeeds::keep) : text;
}

/// Writes lines to standard error as they are: they are the settings' own messages.
void say(const std::string& lines) {
    [[maybe_unused]] const auto written = writeAll(STDERR_FILENO, shownAt(STDERR_FILENO, lines));
}

ExitStatus failWith(const std::string& lines) {
    say(lines);
    return ExitStatus::failed;
}

/// The settings model of the app, on a loop that does everything in place.
class Settings {
public:
    explicit Settings(const Context& context)
        : m_context(context), m_commands(m_loop, context.commands()),
          m_model(SettingsModel::create(
              context.environment(), context.commands().home,
              {.mainLoop = m_loop,
               .files = m_files,
               .clock = context.clock(),
               .commands = m_commands,
               .run = [log = context.commands().log](const std::string& executable,
                                                     const std::vector<std::string>& arguments) -> CommandResult {
                   return CommandRunner::runSync(executable, arguments, {}, log);
               },
               .isExecutable = PosixFileManager::isExecutableFile,
               .log = context.commands().log})) {}

    /// Loads schema and file. What the daemon says in the status file decides which file that is and what is locked.
    [[nodiscard]] bool load() {
        const StatusPoll poll = m_context.observe().poll;
        m_model->update(poll.snapshot.file(), poll.state);
        m_model->load();
        m_loop.drain();
        return m_model->form() != nullptr;
    }

    [[nodiscard]] ExitStatus list() const {
        return m_context.line().json ? printDocument(settingsDocument(*m_model))
                                     : print(settingsText(*m_model, m_context.outputStyle()));
    }

    [[nodiscard]] ExitStatus get() const {
        const SettingField* field = m_model->form()->field(m_context.line().name);
        if (field == nullptr) {
            return unknownName();
        }
        if (field->unreadableFileValue) {
            // The field's value is the default then, which is neither what the file holds nor what the daemon uses.
            return failWith(field->name() + ": " + field->error.value_or("") + "\n");
        }
        return print(shownAt(STDOUT_FILENO, valueText(*field)));
    }

    [[nodiscard]] ExitStatus set() {
        if (const auto refusal = refuseEdit()) {
            return *refusal;
        }
        if (const auto refusal = refuseValues()) {
            return *refusal;
        }
        const SettingSpec spec = m_model->form()->field(m_context.line().name)->spec;
        std::expected<void, ArgumentError> applied;
        m_model->edit([&](SettingsForm& form) {
            applied = applyArguments(form, *form.field(spec.name), m_context.line().values);
        });
        if (!applied) {
            return refuseArguments(applied.error(), spec);
        }
        const ExitStatus status = save();
        if (status == ExitStatus::done && takesItems(spec) && m_context.line().values.empty()) {
            const auto standard = m_model->form()->field(spec.name)->defaultText();
            say(spec.name + ": an empty list is not stored; the daemon's default holds" +
                (standard ? ": " + *standard : "") + "\n");
        }
        return status;
    }

    [[nodiscard]] ExitStatus reset() {
        if (const auto refusal = refuseEdit()) {
            return *refusal;
        }
        m_model->edit([&](SettingsForm& form) { form.reset(m_context.line().name); });
        return save();
    }

    /// Why there are no settings.
    [[nodiscard]] ExitStatus failedToLoad() const {
        const auto* failure = std::get_if<SettingsLoadFailure>(&m_model->state().phase);
        return failWith(failure == nullptr ? "" : failure->title + "\n" + failure->detail + "\n");
    }

private:
    [[nodiscard]] ExitStatus unknownName() const { return failWith(m_context.line().name + ": no such setting\n"); }

    [[nodiscard]] std::optional<ExitStatus> refuseEdit() const {
        const SettingField* field = m_model->form()->field(m_context.line().name);
        if (field == nullptr) {
            return unknownName();
        }
        // An edit reaches the first of them, and the last is what a save writes.
        if (std::ranges::count_if(m_model->form()->fields(),
                                  [&](const auto& other) { return other.name() == field->name(); }) > 1) {
            return failWith(field->name() + ": ambiguous: the schema lists this name more than once\n");
        }
        return std::nullopt;
    }

    [[nodiscard]] std::optional<ExitStatus> refuseValues() const {
        const SettingField& field = *m_model->form()->field(m_context.line().name);
        if (field.isLockedByFlag) {
            return failWith(field.name() + ": " + std::string(SettingsForm::lockedByFlagNote) + "\n");
        }
        const auto isMalformed = [](const std::string& value) { return wellFormed(value) != value; };
        if (std::ranges::any_of(m_context.line().values, isMalformed)) {
            return failWith(field.name() + ": VALUE is not UTF-8\n");
        }
        return std::nullopt;
    }

    static ExitStatus refuseArguments(ArgumentError error, const SettingSpec& spec) {
        switch (error) {
        case ArgumentError::notReadable: return failWith(spec.name + ": " + wrongKindError(spec) + "\n");
        case ArgumentError::wrongNumber: break;
        }
        const std::string words(specOf(Command::settingsSet).words);
        return refuseUsage({.message = displayText(words + " " + spec.name + " takes one VALUE"), .topic = words});
    }

    /// The whole pipeline, whether or not anything was changed.
    [[nodiscard]] ExitStatus save() {
        ExitStatus status = ExitStatus::failed;
        m_model->save([&](const SaveOutcome& outcome) { status = report(outcome); });
        m_loop.drain();
        return status;
    }

    [[nodiscard]] ExitStatus report(const SaveOutcome& outcome) const {
        if (outcome.isSaved()) {
            const ExitStatus printed =
                print(shownAt(STDOUT_FILENO, "settings saved to " + m_model->state().configPath + "\n"));
            const SettingField* field = m_model->form()->field(m_context.line().name);
            if (isTerminal(STDOUT_FILENO) && field != nullptr && field->spec.restart) {
                [[maybe_unused]] const auto written =
                    writeAll(STDERR_FILENO, "restart the daemon to apply: ostrel-menubarctl daemon restart\n");
            }
            return printed;
        }
        const auto* failure = std::get_if<SettingsModel::SaveFailed>(&m_model->state().saveState);
        return failWith(failureText(failure == nullptr ? "" : failure->message, outcome));
    }

    const Context& m_context;
    PosixFileManager m_files;
    InlineLoop m_loop;
    SystemCommands m_commands;
    std::shared_ptr<SettingsModel> m_model;
};

} // namespace

ExitStatus runSettings(const Context& context) {
    Settings settings(context);
    if (!settings.load()) {
        return settings.failedToLoad();
    }
    const Command command = context.line().command;
    return command == Command::settingsGet     ? settings.get()
           : command == Command::settingsSet   ? settings.set()
           : command == Command::settingsReset ? settings.reset()
                                               : settings.list();
}

} // namespace menubar::ctl
