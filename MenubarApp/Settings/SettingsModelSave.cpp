// The settings model and the config file: saving, and following what other programs write.

#include "MenubarApp/Platform/Clock.h"
#include "MenubarApp/Platform/MainLoop.h"
#include "MenubarApp/Settings/SettingsModel.h"
#include "MenubarApp/Settings/SettingsModelChange.h"
#include "MenubarCore/Settings/DebugText.h"
#include "MenubarCore/Text/Join.h"

#include <ranges>
#include <utility>

namespace menubar {

namespace {

std::string rejectionMessage(const SaveOutcome::Rejected& rejected) {
    if (rejected.fields.empty()) {
        return "The daemon rejected the file.";
    }
    return "The daemon rejected the file; see " + joined(std::views::keys(rejected.fields), ", ") + ".";
}

/// Of the messages about a written form, those about fields that still hold what was written.
std::map<std::string, std::string> stillTrue(const std::map<std::string, std::string>& messages,
                                             const SettingsForm& written, const SettingsForm& now) {
    std::map<std::string, std::string> result;
    for (const auto& [name, message] : messages) {
        const SettingField* before = written.field(name);
        const SettingField* after = now.field(name);
        if (before != nullptr && after != nullptr && before->value == after->value && before->isSet == after->isSet) {
            result.emplace(name, message);
        }
    }
    return result;
}

} // namespace

void SettingsModel::checkFile() {
    if (!m_form || m_isSaving || m_isChecking) {
        return;
    }
    m_isChecking = true;
    m_ports.mainLoop.runInBackground([weak = weak_from_this(), generation = m_generation, saves = m_saves,
                                      &files = m_ports.files, &mainLoop = m_ports.mainLoop, path = m_configPath] {
        std::optional<std::string> content;
        bool isKnown = true;
        if (files.exists(path)) {
            auto contents = files.contents(path);
            isKnown = contents.has_value();
            content = isKnown ? std::optional(*std::move(contents)) : std::nullopt;
        }
        mainLoop.post([weak, generation, saves, isKnown, content = std::move(content)] {
            const auto self = weak.lock();
            if (!self) {
                return;
            }
            self->m_isChecking = false;
            if (isKnown) { // what cannot be read now may be so the next time
                self->finishCheck(generation, saves, content);
            }
        });
    });
}

void SettingsModel::finishCheck(std::uint64_t generation, std::uint64_t saves,
                                const std::optional<std::string>& content) {
    if (generation != m_generation || saves != m_saves) {
        return; // the file was read before the form or the file became what they are
    }
    const Change change(*this);
    const bool isSame = content == m_fileContent;
    assign(m_fileChangedOnDisk, !isSame && (m_form->isDirty() || !takeOver(content)));
}

/// Makes the form anew from the file. False, and nothing has changed, when the file is not what a form is made from:
/// perhaps it is being written.
bool SettingsModel::takeOver(const std::optional<std::string>& content) {
    auto file = content ? SettingsForm::parseFile(*content) : JSONValue::Object{};
    if (!file) {
        return false;
    }
    m_form = SettingsForm(m_form->schema(), *std::move(file));
    m_fileContent = content;
    m_configFileExists = content.has_value();
    m_hasChanged = true;
    applyLocks(m_status ? &*m_status : nullptr);
    // What the daemon said of the form before is not about this one.
    assign(m_generalErrors, {});
    if (std::holds_alternative<SaveFailed>(m_saveState)) {
        assign<SaveState>(m_saveState, Idle{});
    }
    return true;
}

void SettingsModel::save(std::function<void(const SaveOutcome&)> completion) {
    if (!m_form || !m_command || m_isSaving) {
        return;
    }
    const Change change(*this);
    assign<SaveState>(m_saveState, Saving{});
    assign(m_generalErrors, {});
    assign(m_fileChangedOnDisk, false);
    m_isSaving = true;
    ++m_saves;
    m_savingDescription = m_command->describe({"config", "validate"});
    m_ports.mainLoop.runInBackground([weak = weak_from_this(), generation = m_generation, ports = m_ports,
                                      command = *m_command, form = std::make_shared<const SettingsForm>(*m_form),
                                      path = m_configPath, loaded = m_fileContent,
                                      completion = std::move(completion)]() mutable {
        auto report = saveSettings(ports.run, command, *form, path, std::move(loaded), ports.log);
        ports.mainLoop.post([weak, generation, form, report = std::move(report), completion = std::move(completion)] {
            if (const auto self = weak.lock()) {
                self->finishSave(*form, generation, report);
            }
            if (completion) {
                completion(report.outcome);
            }
        });
    });
}

void SettingsModel::finishSave(const SettingsForm& written, std::uint64_t generation, const SaveReport& report) {
    const Change change(*this);
    m_isSaving = false;
    m_hasChanged = true;
    const bool isOfThisForm = generation == m_generation && m_form;
    if (isOfThisForm) {
        m_fileChangedOnDisk = report.foundChange;
        m_fileContent = report.placed ? report.placed : m_fileContent;
    } else if (report.placed && !(m_form && m_form->isDirty())) {
        startLoading(); // what was loaded while the save ran may be the file as it was before
    }
    std::visit([&](const auto& outcome) { apply(outcome, report.path, isOfThisForm ? &written : nullptr); },
               report.outcome.storage());
}

// `written` is null when the form was loaded anew since: what the outcome says is not about the present one.

void SettingsModel::apply(const SaveOutcome::InvalidLocally& outcome, const std::string&, const SettingsForm*) {
    m_saveState = SaveFailed{"Fix the highlighted fields first."};
    m_ports.log("settings not saved: local validation failed " + debugText(outcome.errors));
}

void SettingsModel::apply(const SaveOutcome::Rejected& outcome, const std::string&, const SettingsForm* written) {
    if (written != nullptr) {
        m_form->applyErrors(stillTrue(outcome.fields, *written, *m_form));
        m_generalErrors = outcome.general;
    }
    m_saveState = SaveFailed{rejectionMessage(outcome)};
    m_ports.log("settings rejected by config validate: fields=" + debugText(outcome.fields) +
                " general=" + debugText(outcome.general));
}

void SettingsModel::apply(const SaveOutcome::CommandFailed& outcome, const std::string&, const SettingsForm*) {
    m_saveState = SaveFailed{"Could not run config validate: " + outcome.message};
    m_ports.log("settings not saved: " + outcome.message);
}

void SettingsModel::apply(const SaveOutcome::WriteFailed& outcome, const std::string& path, const SettingsForm*) {
    m_saveState = SaveFailed{"Could not write " + path + ": " + outcome.message};
    m_ports.log("settings not saved: " + outcome.message);
}

void SettingsModel::apply(const SaveOutcome::Saved&, const std::string& path, const SettingsForm* written) {
    if (written != nullptr) {
        m_form->markSaved(*written);
    }
    m_configFileExists = true;
    m_saveState = Saved{m_ports.clock.now()};
    m_ports.log("settings saved to " + path);
}

} // namespace menubar
