#import "MenubarApp/AppKit/MenuRenderer.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/AppKit/ObjCPointer.h"
#include "MenubarCore/Menu/MainMenu.h"
#include "MenubarCore/Text/DisplayText.h"

#include <algorithm>
#include <optional>
#include <ranges>
#include <string>
#include <utility>

using menubar::MenuAction;

@implementation ActionItem

- (MenuAction)menuAction {
    return _menuAction;
}

- (void)setMenuAction:(MenuAction)action {
    _menuAction = action;
}

@end

@implementation StatusMenuTarget

- (void)setEvents:(std::weak_ptr<menubar::StatusMenuEvents>)events {
    _events = std::move(events);
}

// Before the menu opens, and where its items are read while it is closed, by a screen reader for example. GNUstep sends
// it at every change of an item too.
- (void)menuNeedsUpdate:(NSMenu*)menu {
    if (const auto events = _events.lock()) {
        events->menuNeedsUpdate();
    }
}

// The items may be replaced here: AppKit has yet to lay out the menu.
- (void)menuWillOpen:(NSMenu*)menu {
    if (const auto events = _events.lock()) {
        events->menuWillOpen();
    }
}

- (void)menuDidClose:(NSMenu*)menu {
    if (const auto events = _events.lock()) {
        events->menuDidClose();
    }
}

- (void)choose:(ActionItem*)sender {
    const auto events = _events.lock();
    if (events == nullptr) {
        return;
    }
    // The receiver may replace the menu, and with it the sender: take what is needed first.
    const int tag = static_cast<int>([sender tag]);
    std::optional<std::string> path;
    if (id represented = [sender representedObject]; [represented isKindOfClass:[NSURL class]]) {
        path = menubar::toString([static_cast<NSURL*>(represented) path]);
    }
    events->perform([sender menuAction], tag, path);
}

@end

namespace menubar {

namespace {

/// The one selector of all the app's own actions, or the item's own; null for an item that only says something.
SEL selectorOf(const MenuItem& value) {
    if (value.action != MenuAction::none) {
        return @selector(choose:);
    }
    return value.selector.empty() ? nullptr : NSSelectorFromString(toNSString(value.selector));
}

NSUInteger modifierMask(KeyModifiers modifiers) {
    switch (modifiers) {
    case KeyModifiers::command: return NSEventModifierFlagCommand;
    case KeyModifiers::shiftCommand: return NSEventModifierFlagShift | NSEventModifierFlagCommand;
    }
    return NSEventModifierFlagCommand;
}

void show(ActionItem* item, const MenuItem& value, id target) {
    const SEL selector = selectorOf(value);
    [item setTitle:toNSString(displayTitle(value.title))];
    [item setAction:selector];
    [item setMenuAction:value.action];
    [item setTarget:selector != nullptr && [target respondsToSelector:selector] ? target : nil];
    [item setKeyEquivalent:toNSString(value.keyEquivalent)];
    [item setKeyEquivalentModifierMask:modifierMask(value.keyModifiers)];
    [item setEnabled:value.enabled];
    [item setState:value.checked ? NSControlStateValueOn : NSControlStateValueOff];
    [item setTag:value.tag];
    [item setIndentationLevel:value.indentation];
    [item setToolTip:value.tooltip ? toNSString(displayText(*value.tooltip, LineFeeds::keep)) : nil];
    [item setRepresentedObject:value.path ? toFileURL(*value.path) : nil];
    if (!value.submenu.empty()) {
        const auto submenu = ObjCPointer<NSMenu>::adopt([[NSMenu alloc] initWithTitle:[item title]]);
        updateMenu(submenu.get(), {}, value.submenu, target);
        [item setSubmenu:submenu.get()];
    }
}

NSMenuItem* makeItem(const MenuItem& value, id target) {
    if (value.kind == MenuItem::Kind::separator) {
        return static_cast<NSMenuItem*>([NSMenuItem separatorItem]); // GNUstep declares it as id<NSMenuItem>
    }
    ActionItem* item = [[[ActionItem alloc] initWithTitle:@"" action:nullptr keyEquivalent:@""] autorelease];
    show(item, value, target);
    return item;
}

/// Whether a person would say of the one that it has become the other.
bool goesOn(const MenuItem& before, const MenuItem& now) {
    return before.kind == now.kind && before.action == now.action && before.submenu.empty() && now.submenu.empty();
}

} // namespace

void updateMenu(NSMenu* menu, const Menu& before, const Menu& now, id target) {
    const auto head = std::ranges::mismatch(before, now, goesOn);
    const auto tail = std::ranges::mismatch(std::ranges::subrange(head.in1, before.end()) | std::views::reverse,
                                            std::ranges::subrange(head.in2, now.end()) | std::views::reverse, goesOn);
    const auto first = head.in2 - now.begin();
    const auto last = tail.in2.base() - now.begin();
    // The new ones come before the old ones go: the menu is never empty.
    for (auto i = first; i < last; ++i) {
        [menu insertItem:makeItem(*(now.begin() + i), target) atIndex:i];
    }
    for (auto old = head.in1; old != tail.in1.base(); ++old) {
        [menu removeItemAtIndex:last];
    }
    const auto update = [&](auto from, auto to, auto fresh) {
        for (; from != to; ++from, ++fresh) {
            if (*from != *fresh) {
                show(static_cast<ActionItem*>([menu itemAtIndex:fresh - now.begin()]), *fresh, target);
            }
        }
    };
    update(before.begin(), head.in1, now.begin());
    update(tail.in1.base(), before.end(), tail.in2.base());
}

void installMainMenu(id target) {
    const auto menu = ObjCPointer<NSMenu>::adopt([[NSMenu alloc] initWithTitle:@""]);
    updateMenu(menu.get(), {}, MainMenu::make(), target);
    [NSApp setMainMenu:menu.get()];
}

} // namespace menubar
