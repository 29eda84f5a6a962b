#pragma once

#include "MenubarApp/Settings/SettingsModel.h"

#include <memory>
#include <utility>

namespace menubar {

// How the sources of SettingsModel change it; nobody else includes this.

/// Notifies at its end, the outermost one of several, when anything was changed within.
class SettingsModel::Change {
public:
    explicit Change(SettingsModel& model) : m_model(model.shared_from_this()) { ++m_model->m_changeDepth; }

    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

    ~Change() {
        if (--m_model->m_changeDepth == 0 && std::exchange(m_model->m_hasChanged, false)) {
            m_model->m_observers.notify();
        }
    }

private:
    std::shared_ptr<SettingsModel> m_model; // a callback may let go of the last other one
};

template <typename T>
void SettingsModel::assign(T& member, T value) {
    if (!(member == value)) {
        member = std::move(value);
        m_hasChanged = true;
    }
}

} // namespace menubar
