#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/Commands/SystemTools.h"

#include <chrono>
#include <memory>

namespace menubar {
class Application;
}

/// Puts the app together when launching has finished, and stops its polling when it ends. Main thread.
@interface AppDelegate : NSObject <NSApplicationDelegate> {
    menubar::SystemTools _tools;
    std::chrono::milliseconds _pollInterval;
    std::unique_ptr<menubar::Application> _application;
}

- (instancetype)initWithTools:(const menubar::SystemTools&)tools pollInterval:(std::chrono::milliseconds)pollInterval;

/// The main menu's "Settings...".
- (void)show:(id)sender;

@end
