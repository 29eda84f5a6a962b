#import "MenubarApp/AppKit/AppKitWorkspace.h"

#include "MenubarApp/AppKit/Desktop.h"

#include <utility>

namespace menubar {

AppKitWorkspace::AppKitWorkspace() : AppKitWorkspace(Desktop::makeFileOpener()) {}

AppKitWorkspace::AppKitWorkspace(std::unique_ptr<FileOpener> opener) : m_opener(std::move(opener)) {}

void AppKitWorkspace::open(const std::string& path) {
    m_opener->open(path);
}

void AppKitWorkspace::reveal(const std::string& path) {
    m_opener->reveal(path);
}

bool AppKitWorkspace::isOptionKeyDown() const {
    // Of the event, not of the keyboard: the key may be up again by the time that the action runs.
    NSEvent* event = [NSApp currentEvent];
    const NSUInteger flags = event != nil ? [event modifierFlags] : [NSEvent modifierFlags];
    return (flags & NSEventModifierFlagOption) != 0;
}

void AppKitWorkspace::terminate() {
    [NSApp terminate:nil];
}

} // namespace menubar
