#import "MenubarApp/AppKit/Controls/ActionTarget.h"

#include <utility>

@implementation MenubarActionTarget

- (instancetype)initWithReporter:(const menubar::Reporter&)reporter
                          report:(std::function<void(const menubar::Reporter&, id)>)report {
    self = [super init];
    if (self != nil) {
        _reporter = reporter;
        _report = std::move(report);
    }
    return self;
}

- (void)act:(id)sender {
    // The control may be destroyed in the course of the call, and its window with it.
    [[self retain] autorelease];
    [[sender retain] autorelease];
    _report(_reporter, sender);
}

@end
