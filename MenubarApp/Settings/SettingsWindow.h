#pragma once

#include "MenubarCore/Menu/DaemonState.h"
#include "MenubarCore/Status/StatusFile.h"
#include "MenubarCore/System/Interface.h"

namespace menubar {

/// What the status menu asks of the settings. Main thread.
class SettingsWindow : public Interface {
public:
    /// Opens the window or brings it forward.
    virtual void show() = 0;

    /// Called after every poll, whether or not the window is open. `status` is null when no file is loaded.
    virtual void update(const StatusFile* status, const DaemonState& state) = 0;
};

} // namespace menubar
