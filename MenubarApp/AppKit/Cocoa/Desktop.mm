#include "MenubarApp/AppKit/Desktop.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarApp/Platform/UserDefaults.h"

#include "MenubarCore/Text/DisplayText.h"

#import <CoreGraphics/CoreGraphics.h>
#import <dispatch/dispatch.h>

#include <csignal>
#include <utility>
#include <vector>

#include <unistd.h>

namespace menubar {

namespace {

class FinderOpener final : public FileOpener {
public:
    void open(const std::string& path) override { [[NSWorkspace sharedWorkspace] openURL:toFileURL(path)]; }

    void reveal(const std::string& path) override {
        [[NSWorkspace sharedWorkspace] activateFileViewerSelectingURLs:@[ toFileURL(path) ]];
    }
};

/// Opened by name, whatever the bundle's identifier is: documented commands (`defaults write ostrel-menubar ...`) name
/// this domain. A suite sees what another process has written without being asked to synchronise.
NSUserDefaults* defaultsDomain() {
    static NSUserDefaults* const domain = [] {
        NSUserDefaults* suite =
            [[NSUserDefaults alloc] initWithSuiteName:toNSString(UserDefaults::domain(processEnvironment()))];
        // A program outside a bundle may have this very domain as its standard one, which no suite may be.
        return suite != nil ? suite : [[NSUserDefaults standardUserDefaults] retain];
    }();
    return domain;
}

/// Nil for what is absent or no number.
NSNumber* number(NSDictionary* entry, CFStringRef key) {
    id value = [entry objectForKey:static_cast<NSString*>(key)];
    return [value isKindOfClass:[NSNumber class]] ? value : nil;
}

std::optional<double> coordinate(NSDictionary* bounds, CFStringRef key) {
    NSNumber* value = number(bounds, key);
    return value != nil ? std::optional([value doubleValue]) : std::nullopt;
}

std::vector<ListedWindow> listedWindows() {
    std::vector<ListedWindow> windows;
    @autoreleasepool {
        NSArray* list =
            [static_cast<NSArray*>(CGWindowListCopyWindowInfo(kCGWindowListOptionAll, kCGNullWindowID)) autorelease];
        for (NSDictionary* entry in list) {
            id bounds = [entry objectForKey:static_cast<NSString*>(kCGWindowBounds)];
            NSDictionary* place = [bounds isKindOfClass:[NSDictionary class]] ? bounds : nil;
            windows.push_back({.number = [number(entry, kCGWindowNumber) longLongValue],
                               .owner = [number(entry, kCGWindowOwnerPID) longLongValue],
                               .level = [number(entry, kCGWindowLayer) longLongValue],
                               .onscreen = [number(entry, kCGWindowIsOnscreen) boolValue] != NO,
                               .x = coordinate(place, CFSTR("X")),
                               .width = coordinate(place, CFSTR("Width"))});
        }
    }
    return windows;
}

/// An NSAlert as a sheet. Its handler is called however the sheet ends; the function that it shares with this object is
/// empty once the answer has been given or is no longer wanted.
class NativeAlertSheet final : public AlertSheet {
public:
    NativeAlertSheet(NSWindow* window, const Alert& alert, std::function<void(std::size_t)> answer)
        : m_answer(std::make_shared<std::function<void(std::size_t)>>(std::move(answer))),
          m_window(ObjCPointer<NSWindow>::retain(window)),
          m_alert(ObjCPointer<NSAlert>::adopt([[NSAlert alloc] init])) {
        [m_alert.get() setMessageText:toNSString(displayTitle(alert.message))];
        [m_alert.get() setInformativeText:toNSString(displayText(alert.information, LineFeeds::keep))];
        NSButton* last = nil;
        for (const std::string& title : alert.buttons) {
            last = [m_alert.get() addButtonWithTitle:toNSString(displayTitle(title))];
        }
        if (alert.buttons.size() > 1) {
            [last setKeyEquivalent:@"\033"];
        }
        [m_alert.get() beginSheetModalForWindow:window
                              completionHandler:[shared = m_answer](NSModalResponse response) {
                                  const auto tell = std::exchange(*shared, nullptr);
                                  if (tell && response >= NSAlertFirstButtonReturn) {
                                      tell(static_cast<std::size_t>(response - NSAlertFirstButtonReturn));
                                  }
                              }];
    }

    ~NativeAlertSheet() override {
        if (std::exchange(*m_answer, nullptr)) {
            [m_window.get() endSheet:[m_alert.get() window] returnCode:NSModalResponseAbort];
        }
    }

private:
    std::shared_ptr<std::function<void(std::size_t)>> m_answer;
    ObjCPointer<NSWindow> m_window;
    ObjCPointer<NSAlert> m_alert;
};

/// The global concurrent queue at user-initiated quality of service.
class DispatchQueue final : public BackgroundQueue {
public:
    ~DispatchQueue() override {
        dispatch_group_wait(m_running, DISPATCH_TIME_FOREVER);
        dispatch_release(m_running);
    }

    void run(std::function<void()> action) override {
        // A block copies what it captures, and may do so more than once: the action itself is shared.
        const auto shared = std::make_shared<const std::function<void()>>(std::move(action));
        dispatch_group_async(m_running, dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), ^{
            (*shared)();
        });
    }

private:
    dispatch_group_t m_running = dispatch_group_create();
};

/// A service manager ends the app with it. That is a quit like any other, which waits for a save.
void quitOnTerminationSignal() {
    std::signal(SIGTERM, SIG_IGN);
    static dispatch_source_t const source =
        dispatch_source_create(DISPATCH_SOURCE_TYPE_SIGNAL, SIGTERM, 0, dispatch_get_main_queue());
    dispatch_source_set_event_handler(source, ^{
        // Not from here: a block of the main queue that waits for a save would hold back all others.
        [NSApp performSelectorOnMainThread:@selector(terminate:) withObject:nil waitUntilDone:NO];
    });
    dispatch_resume(source);
}

} // namespace

namespace Desktop {

void prepareProcess() {
    // No arguments are read; AppKit would take one for a file to open, and ask about it.
    [[NSUserDefaults standardUserDefaults] registerDefaults:@{@"NSTreatUnknownArgumentsAsOpen" : @"NO"}];
}

void prepareApplication() {
    quitOnTerminationSignal();
    // For as long as the process lives: without it the timers of an app without windows are stretched.
    static id<NSObject> const activity =
        [[[NSProcessInfo processInfo] beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                        reason:@"the menu-bar item follows the status file"] retain];
    (void)activity;
}

ObjCPointer<NSStatusItem> makeStatusItem() {
    return ObjCPointer<NSStatusItem>::retain(
        [[NSStatusBar systemStatusBar] statusItemWithLength:NSVariableStatusItemLength]);
}

NSImage* statusSymbol(const std::string& name, NSColor* color) {
    NSImage* symbol = [NSImage imageWithSystemSymbolName:toNSString(name) accessibilityDescription:@"ostrel"];
    // A template would be drawn black where the button has a content tint colour.
    NSImage* image =
        [symbol imageWithSymbolConfiguration:[NSImageSymbolConfiguration configurationWithPaletteColors:@[ color ]]];
    [image setTemplate:NO];
    [image setAccessibilityDescription:@"ostrel"];
    return image;
}

VisibilityProbe readVisibility(NSStatusItem* item) {
    NSWindow* window = [[item button] window];
    if (window == nil || [window windowNumber] < 1) {
        return {};
    }
    VisibilityProbe probe = probeWindow(listedWindows(), [window windowNumber], getpid());
    probe.occlusionVisible = ([window occlusionState] & NSWindowOcclusionStateVisible) != 0;
    return probe;
}

ObjCPointer<NSWindow> makeWindow(NSSize contentSize) {
    const NSWindowStyleMask style = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable |
                                    NSWindowStyleMaskMiniaturizable | NSWindowStyleMaskResizable;
    auto window = ObjCPointer<NSWindow>::adopt([[NSWindow alloc]
        initWithContentRect:NSMakeRect(0, 0, contentSize.width, contentSize.height)
                  styleMask:style
                    backing:NSBackingStoreBuffered
                      defer:NO]);
    [window.get() setRestorable:NO]; // nothing of it is kept for the next launch
    return window;
}

void giveBackKeys() {
    // Once the window has gone: until then it counts as one that is left.
    dispatch_async(dispatch_get_main_queue(), ^{
        for (NSWindow* window in [NSApp windows]) {
            if ([window canBecomeMainWindow] && ([window isVisible] || [window isMiniaturized])) {
                return;
            }
        }
        [NSApp hide:nil]; // an app without windows stays the active one otherwise, and nobody gets the keys
    });
}

std::unique_ptr<AlertSheet> showAlert(NSWindow* window, const Alert& alert,
                                      std::function<void(std::size_t button)> answer) {
    return std::make_unique<NativeAlertSheet>(window, alert, std::move(answer));
}

id storedDefault(NSString* key) {
    return [defaultsDomain() objectForKey:key];
}

void storeDefault(NSString* key, bool value) {
    [defaultsDomain() setBool:value forKey:key];
}

std::unique_ptr<BackgroundQueue> makeBackgroundQueue() {
    return std::make_unique<DispatchQueue>();
}

std::unique_ptr<FileOpener> makeFileOpener() {
    return std::make_unique<FinderOpener>();
}

} // namespace Desktop

} // namespace menubar
