#pragma once

#include "MenubarApp/Settings/SettingsWindow.h"

#include <functional>
#include <memory>
#include <string_view>

namespace menubar {

class SettingsModel;

/// Stands where the settings window will be: asked to show itself, it says in one line that it cannot yet. Its model is
/// kept up to date all the same.
class PendingSettingsWindow final : public SettingsWindow {
public:
    explicit PendingSettingsWindow(std::function<void(std::string_view)> log,
                                   std::shared_ptr<SettingsModel> model = nullptr);

    void show() override;
    void update(const StatusFile* status, const DaemonState& state) override;

private:
    std::function<void(std::string_view)> m_log;
    std::shared_ptr<SettingsModel> m_model;
};

} // namespace menubar
