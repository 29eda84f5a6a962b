#import "MenubarApp/AppKit/AppKitMainLoop.h"

#include "MenubarApp/AppKit/Callback.h"
#include "MenubarApp/AppKit/Desktop.h"

#include <deque>
#include <mutex>
#include <utility>

/// Actions on their way to the main thread. As long as there are any, one wake-up is under way; it runs the first one
/// and sends the next wake-up before. So an action that spins a loop of its own (a menu's, an alert's) does not hold
/// back the ones behind it.
@interface MainThreadQueue : NSObject {
    std::mutex _mutex;
    std::deque<menubar::MainLoop::Action> _actions;
}
/// Any thread.
- (void)post:(menubar::MainLoop::Action)action;
- (void)runNext;
- (void)discardAll;
@end

@implementation MainThreadQueue

- (void)wakeUp {
    @autoreleasepool {
        // Named one by one: NSRunLoopCommonModes is a mode that nobody runs in GNUstep, and on macOS it means these.
        [self
            performSelectorOnMainThread:@selector(runNext)
                             withObject:nil
                          waitUntilDone:NO
                                  modes:@[ NSDefaultRunLoopMode, NSEventTrackingRunLoopMode, NSModalPanelRunLoopMode ]];
    }
}

- (void)post:(menubar::MainLoop::Action)action {
    bool isFirst = false;
    {
        const std::lock_guard lock(_mutex);
        isFirst = _actions.empty();
        _actions.push_back(std::move(action));
    }
    if (isFirst) {
        [self wakeUp];
    }
}

- (void)runNext {
    menubar::MainLoop::Action action;
    bool isLast = true;
    {
        const std::lock_guard lock(_mutex);
        if (_actions.empty()) {
            return;
        }
        action = std::move(_actions.front());
        _actions.pop_front();
        isLast = _actions.empty();
    }
    if (!isLast) {
        [self wakeUp];
    }
    @autoreleasepool {
        action();
    }
}

- (void)discardAll {
    std::deque<menubar::MainLoop::Action> discarded;
    const std::lock_guard lock(_mutex);
    discarded.swap(_actions);
}

@end

namespace menubar {

namespace {

class AppKitTimer final : public RepeatingTimer {
public:
    explicit AppKitTimer(ObjCPointer<NSTimer> timer) : m_timer(std::move(timer)) {}

    ~AppKitTimer() override { [m_timer.get() invalidate]; }

private:
    ObjCPointer<NSTimer> m_timer;
};

double seconds(std::chrono::milliseconds duration) {
    return std::chrono::duration<double>(duration).count();
}

} // namespace

AppKitMainLoop::AppKitMainLoop()
    : m_queue(ObjCPointer<MainThreadQueue>::adopt([[MainThreadQueue alloc] init])),
      m_background(Desktop::makeBackgroundQueue()) {}

AppKitMainLoop::~AppKitMainLoop() {
    m_background.reset(); // its last actions may still post
    [m_queue.get() discardAll];
}

void AppKitMainLoop::post(Action action) {
    [m_queue.get() post:std::move(action)];
}

void AppKitMainLoop::runInBackground(Action action) {
    m_background->run(std::move(action));
}

std::unique_ptr<RepeatingTimer> AppKitMainLoop::repeat(std::chrono::milliseconds interval,
                                                       std::chrono::milliseconds tolerance, Action action) {
    const auto callback = makeCallback(std::move(action));
    NSTimer* timer = [NSTimer timerWithTimeInterval:seconds(interval)
                                             target:callback.get()
                                           selector:@selector(call:)
                                           userInfo:nil
                                            repeats:YES];
    [timer setTolerance:seconds(tolerance)];
    // The default mode only: a tracked menu is not rebuilt under the pointer.
    [[NSRunLoop mainRunLoop] addTimer:timer forMode:NSDefaultRunLoopMode];
    return std::make_unique<AppKitTimer>(ObjCPointer<NSTimer>::retain(timer));
}

} // namespace menubar
