#pragma once

#include "MenubarCore/System/Interface.h"

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace menubar {

/// A running timer. Destroying it stops it; its action never runs afterwards. Main thread.
class RepeatingTimer : public Interface {};

/// The main thread's event loop and the pool for work that blocks.
class MainLoop : public Interface {
public:
    using Action = std::function<void()>;

    /// Runs `action` on the main thread, later and in the order of posting, also while a menu is tracked. Any thread.
    virtual void post(Action action) = 0;

    /// Runs `action` on a background thread at user-initiated priority. Any thread.
    virtual void runInBackground(Action action) = 0;

    /// Runs `work` in the background, then `completion`, unless it is empty, on the main thread. This loop outlives
    /// both. Any thread.
    void runInBackgroundThen(Action work, Action completion) {
        runInBackground([this, work = std::move(work), completion = std::move(completion)] {
            work();
            if (completion) {
                post(completion);
            }
        });
    }

    /// Runs `action` on the main thread every `interval`, at most `tolerance` late, but not while a menu is tracked.
    /// The first run is one interval from now. Main thread.
    [[nodiscard]] virtual std::unique_ptr<RepeatingTimer>
    repeat(std::chrono::milliseconds interval, std::chrono::milliseconds tolerance, Action action) = 0;
};

} // namespace menubar
