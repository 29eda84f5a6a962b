#include "MenubarApp/Settings/SettingsModel.h"

#include "MenubarApp/Commands/DaemonCommands.h"
#include "MenubarApp/Platform/MainLoop.h"
#include "MenubarApp/Settings/SettingsModelChange.h"
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

} // namespace

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
      m_ports(std::move(ports)), m_configPath(defaultConfigPath(nullptr, m_environment, m_home)),
      m_isDaemonInstalled(m_ports.files.exists(m_plistPath)) {}

// Loading

void SettingsModel::load() {
    // Trying again after a reload that failed still brings the edits back.
    if (!std::holds_alternative<SettingsLoadFailure>(m_phase)) {
        m_editsToMakeAgain.clear();
    }
    startLoading();
}

void SettingsModel::reloadKeepingEdits() {
    m_editsToMakeAgain = unsavedEdits();
    startLoading();
}

void SettingsModel::startLoading() {
    const Change change(*this);
    const std::uint64_t generation = ++m_generation;
    assign<Phase>(m_phase, Loading{});
    m_hasChanged = m_hasChanged || m_form.has_value();
    m_form.reset();
    assign<SaveState>(m_saveState, Idle{});
    assign(m_generalErrors, {});
    assign(m_fileChangedOnDisk, false);
    assign(m_configPath, defaultConfigPath(m_status ? &*m_status : nullptr, m_environment, m_home));
    m_command = resolveCommand();
    m_isLoading = m_command.has_value();
    if (!m_command) {
        assign<Phase>(m_phase, commandNotFound());
        return;
    }
    assign(m_commandDescription, m_command->describe(schemaArguments()));
    m_ports.mainLoop.runInBackground(
        [weak = weak_from_this(), generation, ports = m_ports, command = *m_command, path = m_configPath] {
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
    m_isLoading = false;
    m_hasChanged = true;
    m_configFileExists = report.configFileExists.value_or(m_configFileExists);
    if (!report.settings) {
        m_phase = std::move(report.settings.error());
        return;
    }
    m_fileContent = std::move(report.settings->fileContent);
    m_form = std::move(report.settings->form);
    makeAgain(std::exchange(m_editsToMakeAgain, {}));
    applyLocks(m_status ? &*m_status : nullptr);
    m_phase = Loaded{};
    if (const auto action = std::exchange(m_afterLoad, nullptr)) {
        action();
    }
}

std::vector<SettingsModel::Edit> SettingsModel::unsavedEdits() const {
    if (!m_form) {
        return m_editsToMakeAgain;
    }
    std::vector<Edit> edits;
    for (const SettingField& field : m_form->fields()) {
        if (field.isDirty()) {
            edits.push_back({.name = field.name(), .value = field.isSet ? std::optional(field.value) : std::nullopt});
        }
    }
    return edits;
}

void SettingsModel::makeAgain(const std::vector<Edit>& edits) {
    for (const Edit& edit : edits) {
        if (edit.value) {
            m_form->set(edit.name, *edit.value);
        } else {
            m_form->reset(edit.name);
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
    assign(m_restartNeeded, ConfigNotices::restartNeeded(status, state));
    assign(m_configErrorNotice, ConfigNotices::configError(status, state));
    const bool hasConfig = status != nullptr && status->config;
    assign(m_liveSettings, hasConfig ? status->config->settings : std::nullopt);
    assign(m_isDaemonInstalled, m_ports.files.exists(m_plistPath));
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
        assign<SaveState>(m_saveState, Restarting{});
    }
    m_ports.commands.startDaemon([weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            const Change change(*self);
            self->assign<SaveState>(self->m_saveState, Idle{});
        }
    });
}

// Editing

void SettingsModel::edit(const std::function<void(SettingsForm&)>& change) {
    if (!m_form) {
        return;
    }
    const Change notice(*this);
    change(*m_form);
    m_hasChanged = true;
    clearSavedMark();
}

void SettingsModel::clearSavedMark() {
    if (std::holds_alternative<Saved>(m_saveState)) {
        assign<SaveState>(m_saveState, Idle{});
    }
}

bool SettingsModel::canSave() const {
    const bool isBusy =
        m_isSaving || std::holds_alternative<Saving>(m_saveState) || std::holds_alternative<Restarting>(m_saveState);
    return std::holds_alternative<Loaded>(m_phase) && m_form && !isBusy && m_form->isDirty() && m_form->isValid();
}

std::vector<std::string> SettingsModel::waitingFor() const {
    std::vector<std::string> commands;
    if (m_isLoading) {
        commands.push_back(m_commandDescription);
    }
    if (m_isSaving) {
        commands.push_back(m_savingDescription);
    }
    return commands;
}

} // namespace menubar
