#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/Commands/SystemTools.h"

#include <memory>

namespace menubar {
class Application;
}

/// Puts the app together when launching has finished, and stops its polling when it ends. Main thread.
@interface AppDelegate : NSObject <NSApplicationDelegate> {
    menubar::SystemTools _tools;
    std::unique_ptr<menubar::Application> _application;
}

- (instancetype)initWithTools:(const menubar::SystemTools&)tools;

/// The main menu's "Settings...".
- (void)show:(id)sender;

@end
