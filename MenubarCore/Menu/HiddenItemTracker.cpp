#include "MenubarCore/Menu/HiddenItemTracker.h"

#include "MenubarCore/Menu/Formatting.h"

namespace menubar {

ItemVisibility itemVisibility(std::optional<bool> onscreen, std::optional<double> width) {
    if (!onscreen || !width || !(*width > 0)) {
        return ItemVisibility::unknown;
    }
    return *onscreen ? ItemVisibility::visible : ItemVisibility::hidden;
}

HiddenItemTracker::Transition HiddenItemTracker::observe(ItemVisibility visibility, Date now) {
    switch (visibility) {
    case ItemVisibility::hidden:
        if (isHidden()) {
            return Transition::unchanged;
        }
        hiddenSince = now;
        return Transition::becameHidden;
    case ItemVisibility::visible:
        if (!isHidden()) {
            return Transition::unchanged;
        }
        hiddenSince.reset();
        return Transition::becameVisible;
    case ItemVisibility::unknown: return Transition::unchanged;
    }
    return Transition::unchanged;
}

namespace HiddenItemCopy {

const std::string_view notificationBody = "The status item does not fit in the menu bar (items can only be reordered, "
                                          "not dragged off). Quit another menu bar "
                                          "app, use a menu bar manager, or switch to the narrower icon-only item: "
                                          "defaults write ostrel-menubar compact -bool "
                                          "true (or OSTREL_MENUBAR_COMPACT=1).";

std::string logLine(bool compact) {
    return "status item is hidden (" + std::string(reason) + "); " +
           (compact ? "already icon only, free a slot in the menu bar"
                    : "try icon-only mode (OSTREL_MENUBAR_COMPACT=1 or the Icon only menu item)");
}

std::string menuLine(Date since, const TimeZone& timeZone) {
    return "Icon hidden since " + Formatting::clock(since, timeZone) + " (" + std::string(reason) + ")";
}

} // namespace HiddenItemCopy

} // namespace menubar
