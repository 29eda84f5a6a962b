#include "MenubarApp/Settings/SaveBeforeQuit.h"

#include "MenubarApp/Platform/MainLoop.h"
#include "MenubarApp/Settings/SettingsModel.h"

#include <utility>

namespace menubar {

SaveBeforeQuit::SaveBeforeQuit(MainLoop& mainLoop, std::shared_ptr<SettingsModel> model)
    : m_mainLoop(mainLoop), m_model(std::move(model)), m_modelChanges(m_model->onChange([this] {
          if (!m_model->isSaving()) {
              giveUp();
          }
      })) {}

bool SaveBeforeQuit::mayQuit(std::function<void()> proceed) {
    if (!m_model->isSaving()) {
        return true;
    }
    m_proceed = std::move(proceed);
    return false;
}

void SaveBeforeQuit::giveUp() {
    // Not at once: whoever saved is told only after the model has changed.
    if (auto proceed = std::exchange(m_proceed, nullptr)) {
        m_mainLoop.post(std::move(proceed));
    }
}

} // namespace menubar
