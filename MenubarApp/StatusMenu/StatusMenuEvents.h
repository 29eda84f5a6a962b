#pragma once

#include "MenubarCore/Menu/MenuItem.h"
#include "MenubarCore/System/Interface.h"

#include <optional>
#include <string>

namespace menubar {

/// What a person does with the status item's menu. Main thread.
class StatusMenuEvents : public Interface {
public:
    /// Somebody is about to look at the menu or its items; it may also have been asked for nothing.
    virtual void menuNeedsUpdate() = 0;

    /// Before the menu is drawn; what it is set to now is what opens.
    virtual void menuWillOpen() = 0;

    /// However it was closed, and before the chosen item's action.
    virtual void menuDidClose() = 0;

    /// An item of the status menu was chosen: its action, tag and path.
    virtual void perform(MenuAction action, int tag, const std::optional<std::string>& path) = 0;
};

} // namespace menubar
