#pragma once

#include "MenubarApp/View/View.h"
#include "MenubarCore/Settings/SettingsForm.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace menubar {

class ListItemIds;

/// What a row asks of its surroundings. All are set.
struct SettingRowActions {
    /// Changes the form; the "saved" mark goes.
    std::function<void(const std::function<void(SettingsForm&)>&)> edit;
    /// The typing into a number's text box is over.
    std::function<void(const std::string& name)> endTyping;
    /// Lets a person choose a file or directory for the setting of this name.
    std::function<void(const SettingSpec&)> choosePath;
    /// Puts the insertion point into what has this identity.
    std::function<void(const std::string& viewId)> focus;
};

/// One setting in the window: its label and state, the control of its kind, what the daemon runs with, what is wrong.
struct SettingRow {
    const SettingField& field;
    std::optional<std::string> liveValue; ///< in the running daemon
    const SettingRowActions& actions;
    const std::shared_ptr<ListItemIds>& listIds;
    std::size_t ordinal = 0; ///< among the fields of this name

    [[nodiscard]] View body() const;

    /// Of the row of the setting with this name; no other view in the window has it.
    [[nodiscard]] static std::string identity(std::string_view name);

    /// Where the field's value comes from, in a few words.
    [[nodiscard]] static std::string sourceBadge(const SettingField& field);
};

} // namespace menubar
