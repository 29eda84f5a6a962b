#pragma once

#include "MenubarApp/Settings/SettingsWindow.h"

#include <functional>
#include <string_view>

namespace menubar {

/// Stands where the settings window will be: asked to show itself, it says in one line that it cannot yet.
class PendingSettingsWindow final : public SettingsWindow {
public:
    explicit PendingSettingsWindow(std::function<void(std::string_view)> log);

    void show() override;
    void update(const StatusFile* status, const DaemonState& state) override;

private:
    std::function<void(std::string_view)> m_log;
};

} // namespace menubar
