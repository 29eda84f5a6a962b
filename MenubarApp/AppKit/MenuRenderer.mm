#import "MenubarApp/AppKit/MenuRenderer.h"

#import "MenubarApp/AppKit/StatusMenuTarget.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/AppKit/ObjCPointer.h"
#include "MenubarCore/Menu/MainMenu.h"
#include "MenubarCore/Text/DisplayText.h"

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

NSMenuItem* makeItem(const MenuItem& value, id target) {
    if (value.kind == MenuItem::Kind::separator) {
        return static_cast<NSMenuItem*>([NSMenuItem separatorItem]); // GNUstep declares it as id<NSMenuItem>
    }
    const SEL selector = selectorOf(value);
    NSString* title = toNSString(displayTitle(value.title));
    ActionItem* item = [[[ActionItem alloc] initWithTitle:title
                                                   action:selector
                                            keyEquivalent:toNSString(value.keyEquivalent)] autorelease];
    [item setMenuAction:value.action];
    [item setTarget:selector != nullptr && [target respondsToSelector:selector] ? target : nil];
    [item setKeyEquivalentModifierMask:modifierMask(value.keyModifiers)];
    [item setEnabled:value.enabled];
    [item setState:value.checked ? NSControlStateValueOn : NSControlStateValueOff];
    [item setTag:value.tag];
    [item setIndentationLevel:value.indentation];
    if (value.tooltip) {
        [item setToolTip:toNSString(displayText(*value.tooltip, LineFeeds::keep))];
    }
    if (value.path) {
        [item setRepresentedObject:toFileURL(*value.path)];
    }
    if (!value.submenu.empty()) {
        const auto submenu = ObjCPointer<NSMenu>::adopt([[NSMenu alloc] initWithTitle:title]);
        for (NSMenuItem* child in makeMenuItems(value.submenu, target)) {
            [submenu.get() addItem:child];
        }
        [item setSubmenu:submenu.get()];
    }
    return item;
}

} // namespace

NSArray<NSMenuItem*>* makeMenuItems(const Menu& menu, id target) {
    NSMutableArray* items = [NSMutableArray arrayWithCapacity:menu.size()];
    for (const MenuItem& value : menu) {
        [items addObject:makeItem(value, target)];
    }
    return items;
}

void installMainMenu(id target) {
    const auto menu = ObjCPointer<NSMenu>::adopt([[NSMenu alloc] initWithTitle:@""]);
    for (NSMenuItem* item in makeMenuItems(MainMenu::make(), target)) {
        [menu.get() addItem:item];
    }
    [NSApp setMainMenu:menu.get()];
}

} // namespace menubar
