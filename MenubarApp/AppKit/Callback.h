#pragma once

#import <Foundation/Foundation.h>

#include "MenubarApp/AppKit/ObjCPointer.h"

#include <functional>

/// A function that messages can be sent to: by a control, a timer, a notification centre. Main thread.
@interface MenubarCallback : NSObject {
    std::function<void()> _function;
}

- (instancetype)initWithFunction:(std::function<void()>)function;

- (void)call:(id)sender;

@end

namespace menubar {

[[nodiscard]] ObjCPointer<MenubarCallback> makeCallback(std::function<void()> function);

/// Calls a function at every notification of that name about `object` (of nil: about any), as long as it lives. Main
/// thread.
class Observation {
public:
    Observation(NSNotificationCenter* center, NSString* name, id object, std::function<void()> function);
    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;
    ~Observation();

private:
    ObjCPointer<NSNotificationCenter> m_center;
    ObjCPointer<MenubarCallback> m_callback;
};

} // namespace menubar
