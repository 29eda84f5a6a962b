#import "MenubarApp/AppKit/OpenPanelRequest.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarCore/Text/DisplayText.h"

#include <utility>

namespace {

/// The path if it is a directory, else the one around it; nil for a path that is not absolute.
NSURL* directoryOf(const std::string& path) {
    if (!path.starts_with('/')) {
        return nil;
    }
    NSString* text = menubar::toNSString(path);
    BOOL isDirectory = NO;
    const bool exists = [[NSFileManager defaultManager] fileExistsAtPath:text isDirectory:&isDirectory];
    NSString* directory = exists && isDirectory ? text : [text stringByDeletingLastPathComponent];
    return [NSURL fileURLWithPath:directory isDirectory:YES];
}

} // namespace

@implementation OpenPanelRequest

- (instancetype)initWithOptions:(const menubar::OpenPanel&)options
                         chosen:(std::function<void(std::optional<std::string>)>)chosen {
    self = [super init];
    if (self != nil) {
        _options = options;
        _chosen = std::move(chosen);
    }
    return self;
}

- (void)start {
    [self performSelector:@selector(run) withObject:nil afterDelay:0.0];
}

- (void)run {
    const auto keepAlive = menubar::ObjCPointer<OpenPanelRequest>::retain(self);
    NSOpenPanel* panel = [NSOpenPanel openPanel];
    NSString* purpose = menubar::toNSString(menubar::displayTitle(_options.title));
    [panel setTitle:purpose];
    [panel setMessage:purpose]; // macOS draws no title
    if (NSURL* directory = directoryOf(_options.startPath)) {
        [panel setDirectoryURL:directory];
    }
    [panel setCanChooseFiles:YES];
    [panel setCanChooseDirectories:YES];
    [panel setAllowsMultipleSelection:NO];
    [panel setShowsHiddenFiles:YES];
    _running = menubar::ObjCPointer<NSOpenPanel>::retain(panel);
    const bool isConfirmed = [panel runModal] == NSModalResponseOK;
    _running = {};
    if (_isWithdrawn) {
        return;
    }
    NSURL* url = isConfirmed ? [[panel URLs] firstObject] : nil; // a cancelled panel may still have some
    const auto chosen = std::exchange(_chosen, nullptr);
    chosen(url == nil ? std::nullopt : std::optional(menubar::toString([url path])));
}

- (void)withdraw {
    _isWithdrawn = YES;
    [NSObject cancelPreviousPerformRequestsWithTarget:self];
    [_running.get() cancel:nil];
}

@end
