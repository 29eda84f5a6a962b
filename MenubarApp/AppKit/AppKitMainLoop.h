#pragma once

#import <Foundation/Foundation.h>

#include "MenubarApp/AppKit/ObjCPointer.h"
#include "MenubarApp/Platform/MainLoop.h"

#include <memory>

@class MainThreadQueue;

namespace menubar {

class BackgroundQueue;

/// The main thread's NSRunLoop and a pool of threads.
///
/// Made and destroyed on the main thread. Destroying it waits for the background actions; what was posted and has not
/// run by then never runs.
class AppKitMainLoop final : public MainLoop {
public:
    AppKitMainLoop();
    ~AppKitMainLoop() override;

    void post(Action action) override;
    void runInBackground(Action action) override;
    [[nodiscard]] std::unique_ptr<RepeatingTimer> repeat(std::chrono::milliseconds interval,
                                                         std::chrono::milliseconds tolerance, Action action) override;

private:
    ObjCPointer<MainThreadQueue> m_queue;
    std::unique_ptr<BackgroundQueue> m_background;
};

} // namespace menubar
