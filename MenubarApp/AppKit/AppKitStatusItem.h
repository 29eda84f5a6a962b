#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/ObjCPointer.h"
#include "MenubarApp/Platform/StatusItem.h"

#include <memory>
#include <optional>

@class StatusMenuTarget;

namespace menubar {

/// One NSStatusItem and one NSMenu for the life of this object. Main thread.
class AppKitStatusItem final : public StatusItem {
public:
    AppKitStatusItem();
    ~AppKitStatusItem() override;

    /// Who hears of the menu from now on.
    void setEvents(std::weak_ptr<StatusMenuEvents> events);

    void apply(const StatusItemPresentation& presentation) override;
    void setMenu(const Menu& menu) override;
    [[nodiscard]] VisibilityProbe readVisibility() override;

    /// The native objects, for tests.
    [[nodiscard]] NSStatusItem* nativeItem() const { return m_item.get(); }

    [[nodiscard]] NSMenu* nativeMenu() const { return m_menu.get(); }

private:
    ObjCPointer<StatusMenuTarget> m_target;
    ObjCPointer<NSMenu> m_menu;
    ObjCPointer<NSStatusItem> m_item;
    std::optional<StatusItemPresentation> m_shown;
    Menu m_shownMenu;
};

} // namespace menubar
