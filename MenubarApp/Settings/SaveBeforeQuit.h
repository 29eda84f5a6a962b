#pragma once

#include "MenubarApp/Platform/Observers.h"

#include <chrono>
#include <functional>
#include <memory>

namespace menubar {

class MainLoop;
class SettingsModel;

/// Holds the end of the app back while settings are being saved: who presses Save and then quits wants both. The app
/// goes on as usual meanwhile. A validator that never ends holds it back no longer than `patience`; then the config
/// file stays as it was, whole.
///
/// Main thread. The main loop outlives it.
class SaveBeforeQuit {
public:
    static constexpr std::chrono::seconds patience{30};

    SaveBeforeQuit(MainLoop& mainLoop, std::shared_ptr<SettingsModel> model);

    /// Whether the app may end now. If not, `proceed` is called in a later turn of the main loop: when the save is over
    /// and all has been told about it, or after `giveUp`. Asked again meanwhile, it calls the newer one only.
    [[nodiscard]] bool mayQuit(std::function<void()> proceed);

    /// `patience` is over.
    void giveUp();

private:
    MainLoop& m_mainLoop;
    std::shared_ptr<SettingsModel> m_model;
    std::function<void()> m_proceed; ///< empty when nobody waits
    Subscription m_modelChanges;     // last: it goes before what its callback uses
};

} // namespace menubar
