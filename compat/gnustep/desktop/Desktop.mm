#include "MenubarApp/AppKit/Desktop.h"

#import "compat/gnustep/desktop/AlertView.h"
#import "compat/gnustep/desktop/StatusStripItem.h"
#import "compat/gnustep/look/Controls.h"
#import "compat/gnustep/look/SymbolImage.h"
#import "compat/gnustep/shim/SheetWindow.h"

#import <AppKit/AppKitExceptions.h>

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/Commands/log.h"
#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "compat/gnustep/desktop/XdgOpener.h"
#include "compat/gnustep/shim/Process.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

#include <unistd.h>

namespace menubar {

namespace {

/// An alert that lies over the window's content; GNUstep's own would not return before it is answered.
class OverlaySheet final : public AlertSheet {
public:
    OverlaySheet(SheetWindow* window, const Alert& alert, std::function<void(std::size_t)> answer)
        : m_window(ObjCPointer<SheetWindow>::retain(window)),
          m_view(ObjCPointer<AlertView>::adopt([[AlertView alloc] initWithAlert:alert pressed:std::move(answer)])) {
        [window beginSheetView:m_view.get()];
        [window makeFirstResponder:[[m_view.get() buttons] objectAtIndex:0]];
    }

    ~OverlaySheet() override { [m_view.get() end]; }

private:
    ObjCPointer<SheetWindow> m_window; // which the view does not own
    ObjCPointer<AlertView> m_view;
};

/// A thread for each action: they wait more than they compute, and are few. A thread keeps its stack until somebody has
/// joined it, so nobody has to.
class ThreadForEach final : public BackgroundQueue {
public:
    ~ThreadForEach() override {
        std::unique_lock lock(m_mutex);
        m_ended.wait(lock, [this] { return m_running == 0; });
    }

    void run(std::function<void()> action) override {
        const std::lock_guard lock(m_mutex);
        std::thread([this, action = std::move(action)]() mutable noexcept {
            action();
            action = nullptr; // what it holds must not outlive this queue
            const std::lock_guard ended(m_mutex);
            --m_running;
            m_ended.notify_all();
        }).detach();
        ++m_running;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_ended;
    int m_running = 0;
};

/// No arguments are read. GNUstep would take one for a file to open, and ask about it in a modal alert.
void hideArguments() {
    char name[] = "ostrel-menubar"; // of the process, and of its defaults domain
    char* arguments[] = {name, nullptr};
    [NSProcessInfo initializeWithArguments:arguments count:1 environment:environ];
}

/// GNUstep takes the home directory from the account and ignores HOME. Its own folders are named relative to the home
/// directory; naming them in full puts them where HOME says.
void moveFoldersHome() {
    NSString* home = toNSString(homeDirectory(processEnvironment()));
    NSMutableDictionary* config = GNUstepConfig(nil);
    for (NSString* key in [config allKeys]) {
        NSString* folder = [config objectForKey:key];
        if ([key hasPrefix:@"GNUSTEP_USER_D"] && ![folder isAbsolutePath]) {
            [config setObject:[home stringByAppendingPathComponent:folder] forKey:key];
        }
    }
    [config setObject:@"" forKey:@"GNUSTEP_USER_CONFIG_FILE"];
    GNUstepConfig(config);
}

void registerLook() {
    [[NSUserDefaults standardUserDefaults] registerDefaults:@{
        @"GSSuppressAppIcon" : @"YES",
        @"GSX11HandlesWindowDecorations" : @"NO",               // asks no window manager what it has
        @"NSMenuInterfaceStyle" : @"NSWindows95InterfaceStyle", // a main menu without a window of its own
        @"NSScrollViewInterfaceStyle" : @"NSMacintoshInterfaceStyle",
        @"windowBackgroundColor" : @"0.94 0.94 0.95",
        @"controlColor" : @"0.985 0.985 0.99",
        @"windowFrameTextColor" : @"0.11 0.11 0.12",
        @"controlShadowColor" : @"0.80 0.80 0.82",
        @"selectedControlColor" : @"0.70 0.84 1.0",
        @"controlBackgroundColor" : @"0.985 0.985 0.99",
        @"selectedTextBackgroundColor" : @"0.70 0.84 1.0",
    }];
}

/// Nobody catches what is thrown before the event loop runs: a person is told in a sentence, not by an exception's
/// name.
[[noreturn]] void endWithASentence(NSException* exception) {
    const Environment environment = processEnvironment();
    const std::string_view display = variable(environment, "DISPLAY");
    if (![[exception name] isEqualToString:NSWindowServerCommunicationException]) {
        log(toString([NSString stringWithFormat:@"%@: %@", [exception name], [exception reason]]));
    } else if (display.empty()) {
        log("there is no display: DISPLAY is not set; ostrel-menubarctl shows the menu in a terminal");
    } else {
        log("the display " + std::string(display) +
            " cannot be opened; ostrel-menubarctl shows the menu in a terminal");
    }
    ::_exit(1);
}

} // namespace

namespace Desktop {

void prepareProcess() {
    NSSetUncaughtExceptionHandler(endWithASentence);
    Process::holdTerminationSignals();
    hideArguments();
    moveFoldersHome();
    Process::keepChildren();
    registerLook();
    Process::becomeMultiThreaded();
}

void prepareApplication() {
    static ControlTheme* const theme = [[ControlTheme alloc] initWithBundle:nil];
    [GSTheme setTheme:theme];
    Process::handleTerminationSignals();
}

ObjCPointer<NSStatusItem> makeStatusItem() {
    return ObjCPointer<NSStatusItem>::adopt([[StatusStripItem alloc] init]);
}

NSImage* statusSymbol(const std::string& name, NSColor* color) {
    SymbolImage* image = [SymbolImage symbolNamed:toNSString(name) accessibilityDescription:@"ostrel"];
    [image setOwnColor:color];
    return image;
}

VisibilityProbe readVisibility(NSStatusItem* item) {
    VisibilityProbe probe;
    NSWindow* window = [[item button] window];
    if (window == nil || [window windowNumber] < 1) {
        return probe;
    }
    const bool isOnScreen = [static_cast<StatusStripItem*>(item) isOnScreen];
    probe.occlusionVisible = isOnScreen;
    probe.onscreen = isOnScreen;
    probe.x = NSMinX([window frame]);
    probe.width = NSWidth([window frame]);
    return probe;
}

ObjCPointer<NSWindow> makeWindow(NSSize contentSize) {
    Process::startPasteboardServer();
    const NSUInteger style = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable | NSWindowStyleMaskMiniaturizable |
                             NSWindowStyleMaskResizable;
    auto window = ObjCPointer<NSWindow>::adopt([[SheetWindow alloc]
        initWithContentRect:NSMakeRect(0, 0, contentSize.width, contentSize.height)
                  styleMask:style
                    backing:NSBackingStoreBuffered
                      defer:NO]);
    [window.get() setAcceptsMouseMovedEvents:YES]; // for the tooltips
    return window;
}

void giveBackKeys() {} // the window manager does, if there is one

std::unique_ptr<AlertSheet> showAlert(NSWindow* window, const Alert& alert,
                                      std::function<void(std::size_t button)> answer) {
    return std::make_unique<OverlaySheet>(static_cast<SheetWindow*>(window), alert, std::move(answer));
}

std::unique_ptr<LoginItem> makeLoginItem() {
    return nullptr;
}

std::unique_ptr<BackgroundQueue> makeBackgroundQueue() {
    return std::make_unique<ThreadForEach>();
}

std::unique_ptr<FileOpener> makeFileOpener() {
    return std::make_unique<XdgOpener>();
}

} // namespace Desktop

} // namespace menubar
