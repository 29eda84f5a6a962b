#include "MenubarApp/Settings/PendingSettingsWindow.h"

#include "MenubarApp/Settings/SettingsModel.h"

#include <utility>

namespace menubar {

PendingSettingsWindow::PendingSettingsWindow(std::function<void(std::string_view)> log,
                                             std::shared_ptr<SettingsModel> model)
    : m_log(std::move(log)), m_model(std::move(model)) {}

void PendingSettingsWindow::show() {
    m_log("the settings window is not available yet");
}

void PendingSettingsWindow::update(const StatusFile* status, const DaemonState& state) {
    if (m_model) {
        m_model->update(status, state);
    }
}

} // namespace menubar
