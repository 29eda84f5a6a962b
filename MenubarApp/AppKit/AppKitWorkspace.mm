#import "MenubarApp/AppKit/AppKitWorkspace.h"

#include "MenubarApp/AppKit/Desktop.h"

#include <utility>

/// Passes the notification on as long as it is registered for it.
@interface WakeListener : NSObject {
    std::function<void()> _woke;
}
- (instancetype)initWithWoke:(std::function<void()>)woke;
- (void)stop;
@end

@implementation WakeListener

- (instancetype)initWithWoke:(std::function<void()>)woke {
    self = [super init];
    if (self != nil) {
        _woke = std::move(woke);
        [[[NSWorkspace sharedWorkspace] notificationCenter] addObserver:self
                                                               selector:@selector(noteWake:)
                                                                   name:NSWorkspaceDidWakeNotification
                                                                 object:nil];
    }
    return self;
}

- (void)noteWake:(NSNotification*)notification {
    _woke();
}

- (void)stop {
    [[[NSWorkspace sharedWorkspace] notificationCenter] removeObserver:self];
}

@end

namespace menubar {

AppKitWorkspace::AppKitWorkspace() : AppKitWorkspace(Desktop::makeFileOpener()) {}

AppKitWorkspace::AppKitWorkspace(std::unique_ptr<FileOpener> opener)
    : m_opener(std::move(opener)), m_wakeListener(ObjCPointer<WakeListener>::adopt(
                                       [[WakeListener alloc] initWithWoke:[this] { m_wakeObservers.notify(); }])) {}

AppKitWorkspace::~AppKitWorkspace() {
    [m_wakeListener.get() stop];
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
