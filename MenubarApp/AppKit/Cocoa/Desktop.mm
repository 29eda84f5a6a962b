#include "MenubarApp/AppKit/Desktop.h"

#include "MenubarApp/AppKit/Cocoa/DispatchQueue.h"
#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/Platform/UserDefaults.h"

#import <CoreGraphics/CoreGraphics.h>

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
