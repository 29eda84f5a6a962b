#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace menubar {

/// A running timer. Destroying it stops it; its action never runs afterwards. Main thread.
class RepeatingTimer {
public:
    RepeatingTimer() = default;
    RepeatingTimer(const RepeatingTimer&) = delete;
    RepeatingTimer& operator=(const RepeatingTimer&) = delete;
    virtual ~RepeatingTimer() = default;
};

/// The main thread's event loop and the pool for work that blocks.
class MainLoop {
public:
    using Action = std::function<void()>;

    MainLoop() = default;
    MainLoop(const MainLoop&) = delete;
    MainLoop& operator=(const MainLoop&) = delete;
    virtual ~MainLoop() = default;

    /// Runs `action` on the main thread, later and in the order of posting, also while a menu is tracked. Any thread.
    virtual void post(Action action) = 0;

    /// Runs `action` on a background thread at user-initiated priority. Any thread.
    virtual void runInBackground(Action action) = 0;

    /// Runs `action` on the main thread every `interval`, at most `tolerance` late, but not while a menu is tracked.
    /// The first run is one interval from now. Main thread.
    [[nodiscard]] virtual std::unique_ptr<RepeatingTimer>
    repeat(std::chrono::milliseconds interval, std::chrono::milliseconds tolerance, Action action) = 0;
};

} // namespace menubar
