#pragma once

#include "MenubarApp/Commands/log.h"
#include "MenubarApp/Platform/Observers.h"
#include "MenubarApp/Settings/SettingsView.h"
#include "MenubarApp/Settings/SettingsWindow.h"
#include "MenubarApp/View/Window.h"
#include "MenubarCore/System/Environment.h"

#include <memory>
#include <string>

namespace menubar {

class Clock;
class ListItemIds;
class MainLoop;
class SettingsModel;
class ViewPresenter;

/// The one settings window: absent until it is shown, dropped when it is closed, made and loaded anew when it is shown
/// again. The model outlives it. Main thread.
class SettingsWindowController final : public SettingsWindow,
                                       public WindowEvents,
                                       public std::enable_shared_from_this<SettingsWindowController> {
public:
    static constexpr Size contentSize{.width = 680.0, .height = 760.0};
    static constexpr Size minimumSize{.width = 520.0, .height = 420.0};

    /// For automation: when it is exactly "1", the first load of a new window sets one setting and saves. Refused
    /// unless the variable that names the config file is set, so that nobody's real file is touched.
    static constexpr std::string_view saveOnOpenKey = "OSTREL_MENUBAR_SAVE_ON_OPEN";

    /// What the controller reaches the desktop through; the references outlive it.
    struct Ports {
        MainLoop& mainLoop;
        WindowFactory& windows;
        const Clock& clock;
        Log log;
    };

    [[nodiscard]] static std::shared_ptr<SettingsWindowController>
    create(Environment environment, std::shared_ptr<SettingsModel> model, Ports ports);

    ~SettingsWindowController() override;

    // Events from the shell

    void show() override;
    void update(const StatusFile* status, const DaemonState& state) override;
    void windowWillClose() override;

    // State for the shell

    [[nodiscard]] bool isOpen() const { return m_window != nullptr; }

    [[nodiscard]] const std::shared_ptr<SettingsModel>& model() const { return m_model; }

    // Calls to the shell: see Ports.

private:
    enum class AfterSave { offerRestart, nothing };

    SettingsWindowController(Environment environment, std::shared_ptr<SettingsModel> model, Ports ports);

    void open();
    [[nodiscard]] SettingsViewActions makeActions();
    [[nodiscard]] View body() const;
    void installSaveOnOpenHook();
    void saveOnOpen();
    void save(AfterSave afterSave);
    void finishSave(const SaveOutcome& outcome, AfterSave afterSave);
    void offerRestart();
    void scrollToFirstError();
    void choosePath(const SettingSpec& spec);

    const Environment m_environment;
    const std::shared_ptr<SettingsModel> m_model;
    const Ports m_ports;

    // While the window is open.
    std::unique_ptr<Window> m_window;
    std::shared_ptr<ListItemIds> m_listIds;
    SettingsViewActions m_actions;
    std::shared_ptr<ViewPresenter> m_presenter;
    Subscription m_modelChanges; // last: it goes before what its callback uses
};

} // namespace menubar
