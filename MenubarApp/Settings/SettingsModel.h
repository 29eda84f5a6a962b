#pragma once

#include "MenubarApp/Commands/log.h"
#include "MenubarApp/Platform/Observers.h"
#include "MenubarApp/Settings/ConfigFileFollower.h"
#include "MenubarApp/Settings/SettingsLoad.h"
#include "MenubarApp/Settings/SettingsSaver.h"
#include "MenubarCore/Daemon/LaunchAgentCommand.h"
#include "MenubarCore/Menu/ConfigNotices.h"
#include "MenubarCore/Menu/DaemonState.h"
#include "MenubarCore/Settings/SettingsForm.h"
#include "MenubarCore/Status/StatusFile.h"
#include "MenubarCore/System/Environment.h"
#include "MenubarCore/System/FileManager.h"
#include "MenubarCore/Text/Date.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace menubar {

class Clock;
class DaemonCommands;
class MainLoop;

/// The state behind the settings window and the `settings` commands: the daemon's schema and config file as a form, how
/// far loading, saving and restarting have come, and what the running daemon says about its configuration.
///
/// `phase`: loading -> loaded | failed; only `load` leaves loaded and failed.
/// `saveState`: idle -> saving -> saved | failed; saved -> idle with the next edit; any -> restarting -> idle; `load`
/// gives idle.
///
/// One lives for the whole process. Everything is on the main thread; the daemon's commands and all reading and writing
/// of files run in the background, on copies, and their results are dropped when the model is gone by then. A command
/// that never ends therefore stops nothing but the saving that waits for it: see `waitingFor`.
class SettingsModel final : public std::enable_shared_from_this<SettingsModel> {
public:
    struct Loading : std::monostate {};

    struct Loaded : std::monostate {};

    using Phase = std::variant<SettingsLoadFailure, Loading, Loaded>;

    struct Saved {
        Date at;
        bool operator==(const Saved&) const = default;
    };

    struct SaveFailed {
        std::string message; ///< for people
        bool operator==(const SaveFailed&) const = default;
    };

    struct Idle : std::monostate {};

    struct Saving : std::monostate {};

    struct Restarting : std::monostate {};

    using SaveState = std::variant<Saved, SaveFailed, Idle, Saving, Restarting>;

    /// What is known besides the form.
    struct State {
        Phase phase = Loading{};
        std::string configPath{};
        bool configFileExists = false; ///< at the last load or save
        SaveState saveState = Idle{};
        std::vector<std::string> generalErrors{}; ///< about the rejected file, those that belong to no field
        bool restartNeeded = false;               ///< the daemon runs on an older reading of the file
        std::optional<ConfigNotice::Error> configErrorNotice{};
        bool isDaemonInstalled = false; ///< whether the launch agent's property list exists
        /// Another program has changed the file since it was loaded: `checkFile` saw it, or the last save was refused
        /// for it. Nothing is lost: the file and the edits are both as they were. `load` takes the file,
        /// `reloadKeepingEdits` brings both together.
        bool fileChangedOnDisk = false;
    };

    /// What the model reaches the world through. The references outlive the model and every command it starts.
    struct Ports {
        MainLoop& mainLoop;
        const FileManager& files; ///< used on both sides
        const Clock& clock;
        DaemonCommands& commands;
        RunCommand run;
        ExecutableLocator::Exists isExecutable;
        Log log;
    };

    /// The config file to edit: the variable OSTREL_CONFIG_FILE (a leading tilde stands for `home`), else the file that
    /// the daemon says it has loaded, else `home` + "/.config/ostrel/config.json". `status` may be null.
    [[nodiscard]] static std::string defaultConfigPath(const StatusFile* status, const Environment& environment,
                                                       const std::string& home);

    [[nodiscard]] static std::shared_ptr<SettingsModel> create(Environment environment, std::string home, Ports ports);

    // Events from the shell

    /// Starts loading or reloading; edits that were not saved are dropped. An earlier load that is still under way no
    /// longer counts.
    void load();

    /// Loads again after a load that failed; edits that a reload was to keep still come back.
    void tryAgain() { startLoading(); }

    /// Reloads, and makes the edits that were not saved again in what is loaded then. For a file that was changed by
    /// another program.
    void reloadKeepingEdits();

    /// Tells what a poll found; `status` is null when no file is loaded. Edits are not disturbed.
    void update(const StatusFile* status, const DaemonState& state);

    /// Looks, in the background, whether the config file still is what was loaded. If it is not, a form without unsaved
    /// edits quietly becomes what the file says now, and any other is told of by `fileChangedOnDisk`. For an owner that
    /// shows the form, from time to time.
    void checkFile();

    /// Changes the form, where there is one; the "saved" mark goes.
    void edit(const std::function<void(SettingsForm&)>& change);

    /// A person has left the text box of this number, or a button is about to act: see SettingsForm::endTyping.
    void endTyping(std::string_view name);

    /// Validates the form as it is now through the daemon and writes it. `completion` runs once, also when the model
    /// has gone by then. Without a form, or while an earlier save is not over, nothing happens and it never runs.
    /// Whether there is anything to save is the caller's concern: see `canSave`.
    void save(std::function<void(const SaveOutcome&)> completion);

    /// Restarts the daemon, so that it reads the file.
    void restartDaemon();

    /// Runs once, after the next load that succeeds.
    void setAfterLoad(std::function<void()> action) { m_afterLoad = std::move(action); }

    /// `callback` is called after each change of what follows, once for all that changed together.
    [[nodiscard]] Subscription onChange(std::function<void()> callback) { return m_observers.add(std::move(callback)); }

    // State for the shell

    [[nodiscard]] const State& state() const { return m_state; }

    /// Null until a load has succeeded. Valid until the next event.
    [[nodiscard]] const SettingsForm* form() const { return m_form ? &*m_form : nullptr; }

    /// The command line that prints the schema; empty while none is known.
    [[nodiscard]] std::string commandDescription() const;

    /// A save has been started and is not over, whatever `saveState` says since.
    [[nodiscard]] bool isSaving() const { return m_saver.waitingFor().has_value(); }

    /// The command lines that have been started and have not ended: what loading and saving wait for.
    [[nodiscard]] std::vector<std::string> waitingFor() const;

    [[nodiscard]] bool canSave() const;

    /// The field's value in the running daemon, as text; nothing when the daemon does not report it.
    [[nodiscard]] std::optional<std::string> liveValue(const SettingField& field) const;

    // Calls to the shell: see Ports.

private:
    /// Notifies at its end, the outermost one of several, when anything was changed within.
    class Change;

    SettingsModel(Environment environment, std::string home, Ports ports);

    template <typename T>
    void assign(T& member, T value);
    [[nodiscard]] std::optional<LaunchAgentCommand> resolveCommand() const;
    void startLoading();
    void finishLoad(std::uint64_t generation, LoadReport report);
    void makeEditsAgain(const SettingsForm& edited);
    void applyLocks(const StatusFile* status);
    [[nodiscard]] bool takeOver(const ConfigFileFollower::Content& content);
    void finishSave(const SaveRequest& request, std::uint64_t generation, const SaveReport& report);

    const Environment m_environment;
    const std::string m_home;
    const std::string m_plistPath;
    const Ports m_ports;
    SettingsSaver m_saver;
    ConfigFileFollower m_follower;

    State m_state;
    std::optional<SettingsForm> m_form;
    std::optional<JSONValue::Object> m_liveSettings; ///< what the running daemon reports, by key
    std::optional<StatusFile> m_status;              ///< of the last poll, what it says about the configuration
    std::function<void()> m_afterLoad;
    std::optional<LaunchAgentCommand> m_command;
    std::optional<SettingsForm> m_edited; ///< its unsaved edits are to be made again in the form to come
    std::uint64_t m_generation = 0;       ///< of the form: each load begins a new one

    int m_changeDepth = 0;
    bool m_hasChanged = false;
    Observers m_observers;
};

} // namespace menubar
