#import "MenubarApp/AppKit/MenuRenderer.h"

#import "MenubarApp/AppKit/AppDelegate.h"
#import "MenubarApp/AppKit/StatusMenuTarget.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/AppKit/ObjCPointer.h"
#include "MenubarCore/Menu/MainMenu.h"
#include "MenubarCore/Text/DisplayText.h"

// The selectors that are declared nowhere in AppKit's own headers.
@interface NSResponder (MenubarEditing)
- (void)undo:(id)sender;
- (void)redo:(id)sender;
@end

namespace menubar {

namespace {

enum class Receiver { target, responderChain };

struct Route {
    SEL selector;
    Receiver receiver;
};

Route routeOf(MenuAction action) {
    switch (action) {
    case MenuAction::none:
        return {nullptr, Receiver::responderChain};
    case MenuAction::focusSession:
        return {
            @selector(focusSession:), Receiver::target
        };
    case MenuAction::openHandoff:
        return {
            @selector(openHandoff:), Receiver::target
        };
    case MenuAction::refreshClicked:
        return {
            @selector(refreshClicked:), Receiver::target
        };
    case MenuAction::openSettings:
        return {
            @selector(openSettings:), Receiver::target
        };
    case MenuAction::toggleCompact:
        return {
            @selector(toggleCompact:), Receiver::target
        };
    case MenuAction::startDaemon:
        return {
            @selector(startDaemon:), Receiver::target
        };
    case MenuAction::stopDaemon:
        return {
            @selector(stopDaemon:), Receiver::target
        };
    case MenuAction::openLogs:
        return {
            @selector(openLogs:), Receiver::target
        };
    case MenuAction::openStatusFile:
        return {
            @selector(openStatusFile:), Receiver::target
        };
    case MenuAction::quit:
        return {
            @selector(quit:), Receiver::target
        };
    case MenuAction::showSettings:
        return {
            @selector(show:), Receiver::target
        };
    case MenuAction::terminate:
        return {
            @selector(terminate:), Receiver::responderChain
        };
    case MenuAction::undo:
        return {
            @selector(undo:), Receiver::responderChain
        };
    case MenuAction::redo:
        return {
            @selector(redo:), Receiver::responderChain
        };
    case MenuAction::cut:
        return {
            @selector(cut:), Receiver::responderChain
        };
    case MenuAction::copy:
        return {
            @selector(copy:), Receiver::responderChain
        };
    case MenuAction::paste:
        return {
            @selector(paste:), Receiver::responderChain
        };
    case MenuAction::selectAll:
        return {
            @selector(selectAll:), Receiver::responderChain
        };
    case MenuAction::performClose:
        return {
            @selector(performClose:), Receiver::responderChain
        };
    case MenuAction::performMiniaturize:
        return {
            @selector(performMiniaturize:), Receiver::responderChain
        };
    }
    return {nullptr, Receiver::responderChain};
}

NSUInteger modifierMask(KeyModifiers modifiers) {
    switch (modifiers) {
    case KeyModifiers::command:
        return NSEventModifierFlagCommand;
    case KeyModifiers::shiftCommand:
        return NSEventModifierFlagShift | NSEventModifierFlagCommand;
    }
    return NSEventModifierFlagCommand;
}

NSMenuItem* makeItem(const MenuItem& value, id target) {
    if (value.kind == MenuItem::Kind::separator) {
        return static_cast<NSMenuItem*>([NSMenuItem separatorItem]); // GNUstep declares it as id<NSMenuItem>
    }
    const Route route = routeOf(value.action);
    NSString* title = toNSString(displayTitle(value.title));
    NSMenuItem* item = [[[NSMenuItem alloc] initWithTitle:title
                                                   action:route.selector
                                            keyEquivalent:toNSString(value.keyEquivalent)] autorelease];
    [item setTarget:route.receiver == Receiver::target ? target : nil];
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
