#import "MenubarApp/AppKit/Callback.h"

#include <utility>

@implementation MenubarCallback

- (instancetype)initWithFunction:(std::function<void()>)function {
    self = [super init];
    if (self != nil) {
        _function = std::move(function);
    }
    return self;
}

- (void)call:(id)sender {
    // Both may be let go of in the course of the call.
    const auto callback = menubar::ObjCPointer<MenubarCallback>::retain(self);
    const auto caller = menubar::ObjCPointer<NSObject>::retain(sender);
    // A turn of the main loop that handled no event need not drain the pool.
    @autoreleasepool {
        _function();
    }
}

@end

namespace menubar {

ObjCPointer<MenubarCallback> makeCallback(std::function<void()> function) {
    return ObjCPointer<MenubarCallback>::adopt([[MenubarCallback alloc] initWithFunction:std::move(function)]);
}

Observation::Observation(NSNotificationCenter* center, NSString* name, id object, std::function<void()> function)
    : m_center(ObjCPointer<NSNotificationCenter>::retain(center)), m_callback(makeCallback(std::move(function))) {
    [center addObserver:m_callback.get() selector:@selector(call:) name:name object:object];
}

Observation::~Observation() {
    [m_center.get() removeObserver:m_callback.get()];
}

} // namespace menubar
