#import "MenubarApp/AppKit/AppDelegate.h"

#include "MenubarApp/AppKit/AppKitMainLoop.h"
#include "MenubarApp/AppKit/AppKitStatusItem.h"
#include "MenubarApp/AppKit/AppKitUserDefaults.h"
#include "MenubarApp/AppKit/AppKitWindow.h"
#include "MenubarApp/AppKit/AppKitWorkspace.h"
#include "MenubarApp/AppKit/Desktop.h"
#include "MenubarApp/AppKit/MenuRenderer.h"
#include "MenubarApp/AppKit/runApplication.h"
#include "MenubarApp/Commands/CommandRunner.h"
#include "MenubarApp/Commands/SystemCommands.h"
#include "MenubarApp/Commands/log.h"
#include "MenubarApp/Platform/LoginRequest.h"
#include "MenubarApp/Platform/PosixFileManager.h"
#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarApp/Platform/SystemClock.h"
#include "MenubarApp/Settings/SaveBeforeQuit.h"
#include "MenubarApp/Settings/SettingsModel.h"
#include "MenubarApp/Settings/SettingsWindowController.h"
#include "MenubarApp/StatusMenu/StatusMenuController.h"
#include "MenubarCore/Status/StatusFileLocator.h"

#include <chrono>
#include <cstdio>
#include <utility>

namespace menubar {

/// Everything that lives as long as the process, in the order of dependence.
class Application {
public:
    Application(std::string statusPath, Environment environment, std::string home, const SystemTools& tools,
                std::chrono::milliseconds pollInterval)
        : m_commands(m_mainLoop, CommandContext::ofThisProcess(tools)),
          m_model(SettingsModel::create(
              environment, home,
              {.mainLoop = m_mainLoop,
               .files = m_fileManager,
               .clock = m_clock,
               .commands = m_commands,
               .run = [](const auto& executable,
                         const auto& arguments) { return CommandRunner::runSync(executable, arguments); },
               .isExecutable = PosixFileManager::isExecutableFile,
               .log = log})),
          m_saveBeforeQuit(m_mainLoop, m_model),
          m_settings(SettingsWindowController::create(
              environment, m_model, {.mainLoop = m_mainLoop, .windows = m_windows, .clock = m_clock, .log = log})) {
        m_controller = StatusMenuController::create(std::move(statusPath), std::move(environment), std::move(home),
                                                    {.mainLoop = m_mainLoop,
                                                     .statusItem = m_statusItem,
                                                     .workspace = m_workspace,
                                                     .defaults = m_defaults,
                                                     .fileManager = m_fileManager,
                                                     .clock = m_clock,
                                                     .commands = m_commands,
                                                     .settings = *m_settings,
                                                     .log = log,
                                                     .interval = pollInterval});
        m_statusItem.setEvents(m_controller);
        m_controller->start();
    }

    [[nodiscard]] StatusMenuController& controller() { return *m_controller; }

    [[nodiscard]] SettingsWindow& settings() { return *m_settings; }

    [[nodiscard]] SaveBeforeQuit& saveBeforeQuit() { return m_saveBeforeQuit; }

private:
    AppKitMainLoop m_mainLoop;
    AppKitStatusItem m_statusItem;
    AppKitWorkspace m_workspace;
    AppKitUserDefaults m_defaults;
    PosixFileManager m_fileManager;
    SystemClock m_clock;
    SystemCommands m_commands;
    AppKitWindowFactory m_windows;
    std::shared_ptr<SettingsModel> m_model;
    SaveBeforeQuit m_saveBeforeQuit;
    std::shared_ptr<SettingsWindowController> m_settings;
    std::shared_ptr<StatusMenuController> m_controller;
};

} // namespace menubar

@implementation AppDelegate

- (instancetype)initWithTools:(const menubar::SystemTools&)tools pollInterval:(std::chrono::milliseconds)pollInterval {
    self = [super init];
    if (self != nil) {
        _tools = tools;
        _pollInterval = pollInterval;
    }
    return self;
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
    const menubar::Environment environment = menubar::processEnvironment();
    const std::string home = menubar::homeDirectory(environment);
    const std::string path = menubar::StatusFileLocator::path(environment, home);
    menubar::log("watching " + path);
    menubar::installMainMenu(self);
    _application = std::make_unique<menubar::Application>(path, environment, home, _tools, _pollInterval);
    if (menubar::variable(environment, "OSTREL_MENUBAR_OPEN_SETTINGS") == "1") { // for scripted use
        [self show:nil];
    }
}

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)application {
    const auto proceed = [] { [NSApp replyToApplicationShouldTerminate:YES]; };
    if (_application == nullptr || _application->saveBeforeQuit().mayQuit(proceed)) {
        return NSTerminateNow;
    }
    const std::chrono::duration<double> patience = menubar::SaveBeforeQuit::patience;
    // AppKit waits in the modal mode.
    [self performSelector:@selector(stopWaitingForSave)
               withObject:nil
               afterDelay:patience.count()
                  inModes:@[ NSDefaultRunLoopMode, NSEventTrackingRunLoopMode, NSModalPanelRunLoopMode ]];
    return NSTerminateLater;
}

- (void)stopWaitingForSave {
    _application->saveBeforeQuit().giveUp();
}

- (void)applicationWillTerminate:(NSNotification*)notification {
    if (_application != nullptr) {
        _application->controller().applicationWillTerminate();
    }
}

/// The status item stays when the settings window closes. GNUstep would end the app.
- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)application {
    return NO;
}

/// Without this answer AppKit writes a warning to standard error before our first line.
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)application {
    return YES;
}

/// A second launch arrives here: a hidden icon must lock nobody out of the settings.
- (BOOL)applicationShouldHandleReopen:(NSApplication*)application hasVisibleWindows:(BOOL)hasVisibleWindows {
    [self show:nil];
    return NO;
}

- (void)show:(id)sender {
    if (_application != nullptr) {
        _application->settings().show();
    }
}

@end

namespace menubar {

namespace {

// Kept so that neither is released while the event loop runs.
NSApplication* application = nil;
AppDelegate* delegate = nil;

/// Gives the process's exit status.
int answer(LoginRequest::Kind request) {
    @autoreleasepool {
        const LoginRequest::Reply reply = LoginRequest::answer(request, Desktop::makeLoginItem().get());
        std::fputs(reply.output.c_str(), stdout);
        std::fputs(reply.errors.c_str(), stderr);
        return reply.exitStatus;
    }
}

void makeApplication(const SystemTools& tools, std::chrono::milliseconds pollInterval) {
    Desktop::prepareProcess();
    application = [NSApplication sharedApplication];
    delegate = [[AppDelegate alloc] initWithTools:tools pollInterval:pollInterval];
    [application setDelegate:delegate];
    [application setActivationPolicy:NSApplicationActivationPolicyAccessory];
    Desktop::prepareApplication();
}

} // namespace

int runApplication(const SystemTools& tools, std::chrono::milliseconds pollInterval) {
    secureStandardDescriptors();
    if (const auto request = LoginRequest::from(processEnvironment())) {
        return answer(*request);
    }
    @autoreleasepool {
        makeApplication(tools, pollInterval);
        [application run];
    }
    return 0;
}

} // namespace menubar
