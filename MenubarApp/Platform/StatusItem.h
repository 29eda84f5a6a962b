#pragma once

#include "MenubarApp/Platform/VisibilityProbe.h"
#include "MenubarCore/Menu/MenuItem.h"
#include "MenubarCore/Menu/StatusItemPresentation.h"
#include "MenubarCore/System/Interface.h"

#include <optional>
#include <string>

namespace menubar {

/// The menu-bar item and its menu, alive as long as the process. Main thread.
class StatusItem : public Interface {
public:
    /// Shows the presentation. Touches only what differs from the one before, for every change is drawn again on each
    /// display.
    virtual void apply(const StatusItemPresentation& presentation) = 0;

    /// What the menu shows from now on, also while it is open: then the highlight stays in the item where it is, as
    /// long as there is such an item. The menu is never empty in between.
    virtual void setMenu(const Menu& menu) = 0;

    /// What the window server tells of the item's window.
    [[nodiscard]] virtual VisibilityProbe readVisibility() = 0;
};

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
