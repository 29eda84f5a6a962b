#include "MenubarApp/Settings/SettingsModel.h"

#include "MenubarApp/Commands/DaemonCommands.h"
#include "MenubarApp/Platform/Clock.h"
#include "MenubarApp/Platform/MainLoop.h"
#include "MenubarCore/Daemon/LaunchAgentLabel.h"
#include "MenubarCore/Menu/Formatting.h"
#include "MenubarCore/Text/Tilde.h"

#include <set>
#include <utility>

namespace menubar {

namespace {

std::vector<std::string> schemaArguments() {
    return {"config", "schema"};
}

std::set<std::string> lockedNames(const SettingsForm& form) {
    std::set<std::string> names;
    for (const SettingField& field : form.fields()) {
        if (field.isLockedByFlag) {
            names.insert(field.name());
        }
    }
    return names;
}

/// Of the messages about a written form, those about fields that still hold what was written and can be edited.
std::map<std::string, std::string> stillTrue(const std::map<std::string, std::string>& messages,
                                             const SettingsForm& written, const SettingsForm& now) {
    std::map<std::string, std::string> result;
    for (const auto& [name, message] : messages) {
        const SettingField* before = written.field(name);
        const SettingField* after = now.field(name);
        if (before != nullptr && after != nullptr && before->value == after->value && before->isSet == after->isSet &&
            !after->isLockedByFlag) {
            result.emplace(name, message);
        }
    }
    return result;
}

} // namespace

class SettingsModel::Change {
public:
    explicit Change(SettingsModel& model) : m_model(model.shared_from_this()) { ++m_model->m_changeDepth; }

    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

    ~Change() {
        if (--m_model->m_changeDepth == 0 && std::exchange(m_model->m_hasChanged, false)) {
            m_model->m_observers.notify();
        }
    }

private:
    std::shared_ptr<SettingsModel> m_model; // a callback may let go of the last other one
};

template <typename T>
void SettingsModel::assign(T& member, T value) {
    if (!(member == value)) {
        member = std::move(value);
        m_hasChanged = true;
    }
}

std::string SettingsModel::defaultConfigPath(const StatusFile* status, const Environment& environment,
                                             const std::string& home) {
    if (const std::string_view named = variable(environment, configFileKey); !named.empty()) {
        return expandTilde(named, home);
    }
    if (status != nullptr && status->configFile) {
        if (const auto& loaded = status->configFile->path; loaded && !loaded->empty()) {
            return *loaded;
        }
    }
    return home + "/.config/ostrel/config.json";
}

std::shared_ptr<SettingsModel> SettingsModel::create(Environment environment, std::string home, Ports ports) {
    return std::shared_ptr<SettingsModel>(new SettingsModel(std::move(environment), std::move(home), std::move(ports)));
}

SettingsModel::SettingsModel(Environment environment, std::string home, Ports ports)
    : m_environment(std::move(environment)), m_home(std::move(home)), m_plistPath(launchAgentPlistPath(m_home)),
      m_ports(std::move(ports)), m_saver(m_ports.mainLoop, m_ports.run, m_ports.log),
      m_follower(m_ports.mainLoop, m_ports.files),
      m_state{.configPath = defaultConfigPath(nullptr, m_environment, m_home),
              .isDaemonInstalled = m_ports.files.exists(m_plistPath)} {}

// Loading

void SettingsModel::load() {
    m_edited.reset();
    startLoading();
}

void SettingsModel::reloadKeepingEdits() {
    if (m_form) { // else there are those of an earlier call, if any
        m_edited = m_form;
    }
    startLoading();
}

void SettingsModel::startLoading() {
    const Change change(*this);
    const std::uint64_t generation = ++m_generation;
    m_follower.forgetLooks();
    assign<Phase>(m_state.phase, Loading{});
    m_hasChanged = m_hasChanged || m_form.has_value();
    m_form.reset();
    assign<SaveState>(m_state.saveState, Idle{});
    assign(m_state.generalErrors, {});
    assign(m_state.fileChangedOnDisk, false);
    assign(m_state.configPath, defaultConfigPath(m_status ? &*m_status : nullptr, m_environment, m_home));
    m_command = resolveCommand();
    if (!m_command) {
        assign<Phase>(m_state.phase, commandNotFound());
        return;
    }
    m_ports.mainLoop.runInBackground(
        [weak = weak_from_this(), generation, ports = m_ports, command = *m_command, path = m_state.configPath] {
            const CommandResult schema = ports.run(command.executable, command.arguments(schemaArguments()));
            auto report = loadSettings(command, schema, path, ports.files);
            ports.mainLoop.post([weak, generation, report = std::move(report)]() mutable {
                if (const auto self = weak.lock()) {
                    self->finishLoad(generation, std::move(report));
                }
            });
        });
}

std::optional<LaunchAgentCommand> SettingsModel::resolveCommand() const {
    const auto readFile = [this](const std::string& path) -> std::optional<std::string> {
        auto contents = m_ports.files.contents(path);
        return contents ? std::optional(*std::move(contents)) : std::nullopt;
    };
    return LaunchAgentCommand::resolve(m_environment, m_home, m_plistPath, readFile, m_ports.isExecutable);
}

void SettingsModel::finishLoad(std::uint64_t generation, LoadReport report) {
    if (generation != m_generation) {
        return; // another load has begun since
    }
    const Change change(*this);
    m_hasChanged = true;
    m_state.configFileExists = report.configFileExists.value_or(m_state.configFileExists);
    if (!report.settings) {
        m_state.phase = std::move(report.settings.error());
        return;
    }
    m_follower.remember(std::move(report.settings->fileContent));
    m_form = std::move(report.settings->form);
    if (const auto edited = std::exchange(m_edited, std::nullopt)) {
        makeEditsAgain(*edited);
    }
    applyLocks(m_status ? &*m_status : nullptr);
    m_state.phase = Loaded{};
    if (const auto action = std::exchange(m_afterLoad, nullptr)) {
        action();
    }
}

void SettingsModel::makeEditsAgain(const SettingsForm& edited) {
    for (const SettingField& field : edited.fields()) {
        if (field.isDirty() && field.isSet) {
            m_form->set(field.name(), field.value);
        } else if (field.isDirty()) {
            m_form->reset(field.name());
        }
    }
}

// What the daemon says

void SettingsModel::update(const StatusFile* status, const DaemonState& state) {
    const Change change(*this);
    m_status.reset();
    if (status != nullptr) {
        // Not its sessions and events, of which there may be thousands.
        m_status = StatusFile{.configFile = status->configFile, .configSources = status->configSources};
    }
    assign(m_state.restartNeeded, ConfigNotices::restartNeeded(status, state));
    assign(m_state.configErrorNotice, ConfigNotices::configError(status, state));
    const bool hasConfig = status != nullptr && status->config;
    assign(m_liveSettings, hasConfig ? status->config->settings : std::nullopt);
    assign(m_state.isDaemonInstalled, m_ports.files.exists(m_plistPath));
    if (m_form) {
        applyLocks(status);
    }
}

/// Locks follow the daemon's command line; while that stays as it is the form is not touched.
void SettingsModel::applyLocks(const StatusFile* status) {
    const auto before = lockedNames(*m_form);
    if (before == (status == nullptr ? std::set<std::string>{} : status->flagLockedSettings())) {
        return;
    }
    const bool hasSources = status != nullptr && status->configSources;
    m_form->applySources(hasSources ? *status->configSources : std::map<std::string, ConfigSource>{});
    m_hasChanged = m_hasChanged || lockedNames(*m_form) != before; // a flag may name no field
}

std::optional<std::string> SettingsModel::liveValue(const SettingField& field) const {
    if (!m_liveSettings) {
        return std::nullopt;
    }
    const auto found = m_liveSettings->find(field.name());
    return found == m_liveSettings->end() ? std::nullopt
                                          : std::optional(Formatting::liveValue(found->second, field.spec));
}

void SettingsModel::restartDaemon() {
    {
        const Change change(*this);
        assign<SaveState>(m_state.saveState, Restarting{});
    }
    m_ports.commands.startDaemon([weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            const Change change(*self);
            self->assign<SaveState>(self->m_state.saveState, Idle{});
        }
    });
}

std::string SettingsModel::commandDescription() const {
    return m_command ? m_command->describe(schemaArguments()) : std::string();
}

std::vector<std::string> SettingsModel::waitingFor() const {
    std::vector<std::string> commands;
    if (m_command && std::holds_alternative<Loading>(m_state.phase)) {
        commands.push_back(commandDescription());
    }
    if (const auto& saving = m_saver.waitingFor()) {
        commands.push_back(*saving);
    }
    return commands;
}

// Editing

void SettingsModel::edit(const std::function<void(SettingsForm&)>& change) {
    if (!m_form) {
        return;
    }
    const Change notice(*this);
    change(*m_form);
    m_hasChanged = true;
    if (std::holds_alternative<Saved>(m_state.saveState)) {
        assign<SaveState>(m_state.saveState, Idle{});
    }
}

void SettingsModel::endTyping(std::string_view name) {
    const Change change(*this);
    m_hasChanged = (m_form && m_form->endTyping(name)) || m_hasChanged;
}

bool SettingsModel::canSave() const {
    const bool isBusy = isSaving() || std::holds_alternative<Saving>(m_state.saveState) ||
                        std::holds_alternative<Restarting>(m_state.saveState);
    return std::holds_alternative<Loaded>(m_state.phase) && m_form && !isBusy && m_form->isDirty() && m_form->isValid();
}

// Following the file

void SettingsModel::checkFile() {
    if (!m_form || isSaving()) {
        return;
    }
    m_follower.look(m_state.configPath, [this](const ConfigFileFollower::Content& content) {
        const Change change(*this);
        const bool isSame = content == m_follower.content();
        assign(m_state.fileChangedOnDisk, !isSame && (m_form->isEdited() || !takeOver(content)));
    });
}

/// Makes the form anew from the file. False, and nothing has changed, when the file is not what a form is made from:
/// perhaps it is being written.
bool SettingsModel::takeOver(const ConfigFileFollower::Content& content) {
    auto file = content ? SettingsForm::parseFile(*content) : JSONValue::Object{};
    if (!file) {
        return false;
    }
    m_form = SettingsForm(m_form->schema(), *std::move(file));
    m_follower.remember(content);
    m_state.configFileExists = content.has_value();
    m_hasChanged = true;
    applyLocks(m_status ? &*m_status : nullptr);
    // What the daemon said of the form before is not about this one.
    assign(m_state.generalErrors, {});
    if (std::holds_alternative<SaveFailed>(m_state.saveState)) {
        assign<SaveState>(m_state.saveState, Idle{});
    }
    return true;
}

// Saving

void SettingsModel::save(std::function<void(const SaveOutcome&)> completion) {
    if (!m_form || !m_command || isSaving()) {
        return;
    }
    const Change change(*this);
    assign<SaveState>(m_state.saveState, Saving{});
    assign(m_state.generalErrors, {});
    assign(m_state.fileChangedOnDisk, false);
    m_follower.forgetLooks();
    m_saver.save({.command = *m_command, .form = *m_form, .path = m_state.configPath, .loaded = m_follower.content()},
                 [weak = weak_from_this(), generation = m_generation,
                  completion = std::move(completion)](const SaveRequest& request, const SaveReport& report) {
                     if (const auto self = weak.lock()) {
                         self->finishSave(request, generation, report);
                     }
                     if (completion) {
                         completion(report.outcome);
                     }
                 });
}

void SettingsModel::finishSave(const SaveRequest& request, std::uint64_t generation, const SaveReport& report) {
    const Change change(*this);
    m_hasChanged = true;
    const bool isOfThisForm = generation == m_generation && m_form;
    const bool isSaved = report.outcome.isSaved();
    if (isOfThisForm) {
        m_state.fileChangedOnDisk = report.foundChange;
        if (report.placed) {
            m_follower.remember(report.placed);
        }
        if (isSaved) {
            m_form->markSaved(request.form);
        } else if (const auto* rejected = report.outcome.rejected()) {
            m_form->applyErrors(stillTrue(rejected->fields, request.form, *m_form));
            m_state.generalErrors = rejected->general;
        }
    } else if (report.placed && !(m_form && m_form->isEdited())) {
        startLoading(); // what was loaded while the save ran may be the file as it was before
    }
    m_state.configFileExists = m_state.configFileExists || isSaved;
    m_state.saveState =
        isSaved ? SaveState(Saved{m_ports.clock.now()}) : SaveFailed{failureMessage(report.outcome, request.path)};
    m_ports.log(logLine(report.outcome, request.path));
}

} // namespace menubar
