#pragma once

#include "MenubarCore/Menu/CompactSetting.h"
#include "MenubarCore/Menu/DaemonState.h"
#include "MenubarCore/Menu/HiddenItemTracker.h"
#include "MenubarCore/Menu/MenuItem.h"
#include "MenubarCore/Status/StatusSnapshot.h"

#include <functional>
#include <string>
#include <vector>

namespace menubar {

/// The status item's menu as a value, made whole from plain inputs. Pure but for `handoffExists`.
struct StatusMenu {
    struct Inputs {
        const StatusSnapshot& snapshot;
        const DaemonState& state;
        const CompactSetting& compact;
        const HiddenItemTracker& hiddenTracker;
        std::function<bool(const std::string&)> handoffExists;
        bool isDaemonInstalled = false; ///< whether the launch agent's property list exists
        bool logsDirectoryExists = false;
        bool statusFileExists = false;
        Date now;
        const TimeZone& timeZone;
    };

    Menu items;

    /// The sessions in the order of their items: the session of tag t is at t - 1.
    std::vector<SessionStatus> sessions;

    [[nodiscard]] static StatusMenu make(const Inputs& inputs);

    /// The session of an item of this menu; null for a tag that none has.
    [[nodiscard]] const SessionStatus* sessionByTag(int tag) const&;
    const SessionStatus* sessionByTag(int tag) && = delete;
};

} // namespace menubar
