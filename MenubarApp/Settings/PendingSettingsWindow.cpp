#include "MenubarApp/Settings/PendingSettingsWindow.h"

#include <utility>

namespace menubar {

PendingSettingsWindow::PendingSettingsWindow(std::function<void(std::string_view)> log) : m_log(std::move(log)) {}

void PendingSettingsWindow::show() {
    m_log("the settings window is not available yet");
}

void PendingSettingsWindow::update(const StatusFile*, const DaemonState&) {
    // Nothing is shown that a new status could change.
}

} // namespace menubar
