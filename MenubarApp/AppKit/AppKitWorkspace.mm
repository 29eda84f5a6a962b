#import "MenubarApp/AppKit/AppKitWorkspace.h"

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/Desktop.h"

#include <utility>

namespace menubar {

AppKitWorkspace::AppKitWorkspace() : AppKitWorkspace(Desktop::makeFileOpener()) {}

AppKitWorkspace::AppKitWorkspace(std::unique_ptr<FileOpener> opener)
    : m_opener(std::move(opener)), m_waking([[NSWorkspace sharedWorkspace] notificationCenter],
                                            NSWorkspaceDidWakeNotification, nil, [this] { m_wakeObservers.notify(); }) {
}

void AppKitWorkspace::open(const std::string& path) {
    m_opener->open(path);
}

void AppKitWorkspace::reveal(const std::string& path) {
    m_opener->reveal(path);
}

bool AppKitWorkspace::isOptionKeyDown() const {
    // Of the event, for the key may be up again by the time that the action runs; and of the keyboard, for the event
    // that ends a menu's tracking need not be the click.
    const NSUInteger flags = [[NSApp currentEvent] modifierFlags] | [NSEvent modifierFlags];
    return (flags & NSEventModifierFlagOption) != 0;
}

Subscription AppKitWorkspace::onWake(std::function<void()> action) {
    return m_wakeObservers.add(std::move(action));
}

void AppKitWorkspace::terminate() {
    [NSApp terminate:nil];
}

} // namespace menubar
