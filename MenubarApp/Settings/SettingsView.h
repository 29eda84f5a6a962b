#pragma once

#include "MenubarApp/Settings/SettingRow.h"
#include "MenubarApp/Settings/SettingsModel.h"
#include "MenubarApp/View/View.h"
#include "MenubarCore/Menu/ConfigNotices.h"
#include "MenubarCore/Settings/SettingsForm.h"
#include "MenubarCore/Text/TimeZone.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace menubar {

class ListItemIds;

/// All that the settings window shows, at one moment.
struct SettingsViewState : SettingsModel::State {
    const SettingsForm* form = nullptr; ///< not null once loaded
    bool canSave = false;
    std::vector<std::string> waitingFor{}; ///< command lines
    /// A field's value in the running daemon; may be empty.
    std::function<std::optional<std::string>(const SettingField&)> liveValue{};
    TimeZone timeZone{};

    /// Points into the model: valid until its next event.
    [[nodiscard]] static SettingsViewState of(const SettingsModel& model, TimeZone timeZone);
};

/// What the view asks of the window's controller. All are set.
struct SettingsViewActions {
    std::function<void()> close;
    std::function<void()> save;
    std::function<void()> restart;
    std::function<void()> tryAgain;  ///< after a load that failed
    std::function<void()> load;      ///< takes the file as it is now
    std::function<void()> keepEdits; ///< takes the file as it is now and makes the edits again
    SettingRowActions row;
};

/// The settings window: banners, a row for each setting, and a footer that stays while the rows scroll. A function of
/// its members.
struct SettingsView {
    const SettingsViewState& state;
    const SettingsViewActions& actions;
    const std::shared_ptr<ListItemIds>& listIds; ///< not null

    [[nodiscard]] View body() const;

    /// What the window says about saving and restarting.
    [[nodiscard]] std::string statusLine() const;
};

} // namespace menubar
