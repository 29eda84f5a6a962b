#include "MenubarApp/AppKit/Desktop.h"

#include "MenubarApp/AppKit/Cocoa/DispatchQueue.h"
#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/Platform/UserDefaults.h"

#include "MenubarCore/Text/DisplayText.h"

#import <CoreGraphics/CoreGraphics.h>

#include <utility>

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
        NSUserDefaults* suite = [[NSUserDefaults alloc] initWithSuiteName:toNSString(UserDefaults::domain)];
        // A program outside a bundle may have this very domain as its standard one, which no suite may be.
        return suite != nil ? suite : [[NSUserDefaults standardUserDefaults] retain];
    }();
    return domain;
}

/// This process's entry of that number in the window server's list; nil when there is none.
NSDictionary* windowEntry(NSArray* list, NSInteger number) {
    for (NSDictionary* entry in list) {
        NSNumber* owner = [entry objectForKey:static_cast<NSString*>(kCGWindowOwnerPID)];
        NSNumber* entryNumber = [entry objectForKey:static_cast<NSString*>(kCGWindowNumber)];
        if ([owner intValue] == getpid() && [entryNumber integerValue] == number) {
            return entry;
        }
    }
    return nil;
}

std::optional<double> number(NSDictionary* bounds, NSString* key) {
    id value = [bounds objectForKey:key];
    return [value isKindOfClass:[NSNumber class]] ? std::optional([value doubleValue]) : std::nullopt;
}

/// An NSAlert as a sheet. Its handler is called however the sheet ends; the state that it shares with this object says
/// whether anybody still wants the answer.
class NativeAlertSheet final : public AlertSheet {
  public:
    NativeAlertSheet(NSWindow* window, const Alert& alert, std::function<void(std::size_t)> answer)
        : m_state(std::make_shared<State>(std::move(answer))), m_window(ObjCPointer<NSWindow>::retain(window)),
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
                              completionHandler:[state = m_state](NSModalResponse response) {
                                  const auto tell = std::exchange(state->answer, nullptr);
                                  if (tell && response >= NSAlertFirstButtonReturn) {
                                      tell(static_cast<std::size_t>(response - NSAlertFirstButtonReturn));
                                  }
                              }];
    }

    ~NativeAlertSheet() override {
        if (std::exchange(m_state->answer, nullptr)) {
            [m_window.get() endSheet:[m_alert.get() window] returnCode:NSModalResponseAbort];
        }
    }

  private:
    struct State {
        explicit State(std::function<void(std::size_t)> function) : answer(std::move(function)) {}

        std::function<void(std::size_t)> answer; ///< empty once it has been given or is no longer wanted
    };

    std::shared_ptr<State> m_state;
    ObjCPointer<NSWindow> m_window;
    ObjCPointer<NSAlert> m_alert;
};

} // namespace

namespace Desktop {

void prepareProcess() {}

void prepareApplication() {}

ObjCPointer<NSStatusItem> makeStatusItem() {
    return ObjCPointer<NSStatusItem>::retain(
        [[NSStatusBar systemStatusBar] statusItemWithLength:NSVariableStatusItemLength]);
}

VisibilityProbe readVisibility(NSStatusItem* item) {
    VisibilityProbe probe;
    NSWindow* window = [[item button] window];
    if (window == nil || [window windowNumber] < 1) {
        return probe;
    }
    probe.occlusionVisible = ([window occlusionState] & NSWindowOcclusionStateVisible) != 0;
    @autoreleasepool {
        NSArray* list =
            [static_cast<NSArray*>(CGWindowListCopyWindowInfo(kCGWindowListOptionAll, kCGNullWindowID)) autorelease];
        NSDictionary* entry = windowEntry(list, [window windowNumber]);
        if (entry == nil) {
            return probe;
        }
        id onscreen = [entry objectForKey:static_cast<NSString*>(kCGWindowIsOnscreen)]; // absent where it is not
        probe.onscreen = [onscreen isKindOfClass:[NSNumber class]] && [onscreen boolValue];
        NSDictionary* bounds = [entry objectForKey:static_cast<NSString*>(kCGWindowBounds)];
        probe.x = number(bounds, @"X");
        probe.width = number(bounds, @"Width");
    }
    return probe;
}

ObjCPointer<NSWindow> makeWindow(NSSize contentSize) {
    const NSWindowStyleMask style = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable |
                                    NSWindowStyleMaskMiniaturizable | NSWindowStyleMaskResizable;
    return ObjCPointer<NSWindow>::adopt([[NSWindow alloc]
        initWithContentRect:NSMakeRect(0, 0, contentSize.width, contentSize.height)
                  styleMask:style
                    backing:NSBackingStoreBuffered
                      defer:NO]);
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
