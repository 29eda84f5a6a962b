#pragma once

#include "MenubarApp/Platform/FileDescriptor.h"
#include "MenubarApp/Platform/MainLoop.h"
#include "MenubarApp/Platform/SignalPipe.h"
#include "MenubarCtl/WatchWait.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace menubar::ctl {

/// The main loop of a command that goes on: it waits for time to pass, for what is posted, for typed keys, for signals
/// and for the reader to go. One at a time in a process, for it catches signals. Main thread but for what says
/// otherwise.
class TerminalLoop final : public MainLoop {
public:
    /// What the owner does about events; each may be empty.
    struct Handlers {
        std::function<void(std::string_view keys)> typed;
        std::function<void()> resized;
        std::function<void()> willSuspend; ///< before the job is stopped
        std::function<void()> didResume;
    };

    /// Absent when the system has no descriptors left.
    [[nodiscard]] static std::unique_ptr<TerminalLoop> create();

    /// Any thread.
    void post(Action action) override;

    /// On a thread of its own. Any thread.
    void runInBackground(Action action) override;

    [[nodiscard]] std::unique_ptr<RepeatingTimer> repeat(std::chrono::milliseconds interval,
                                                         std::chrono::milliseconds tolerance, Action action) override;

    /// Until `stop`, until one of SIGINT, SIGQUIT, SIGTERM and SIGHUP comes, or until nobody reads standard output any
    /// more. Keys are read from standard input where `readsKeys` says so at that moment.
    void run(const Handlers& handlers, const std::function<bool()>& readsKeys);

    void stop() { m_isStopped = true; }

    /// Runs a program of the terminal to its end, in the foreground. What is typed to interrupt it does not end this
    /// loop, and what suspends it suspends both. The exit status, or the system's error number when it could not be
    /// started.
    [[nodiscard]] std::expected<int, int> runInForeground(std::vector<std::string> words);

    /// Waits until no work is in the background any more, but not for ever; false when some is left. Then this object
    /// must outlive the threads: the process has to end without destroying it.
    [[nodiscard]] bool settle(std::chrono::milliseconds limit);

private:
    using Steady = std::chrono::steady_clock;
    class Timer;

    TerminalLoop(SignalPipe signals, FileDescriptor wakeReadEnd, FileDescriptor wakeWriteEnd)
        : m_signals(std::move(signals)), m_wakeReadEnd(std::move(wakeReadEnd)),
          m_wakeWriteEnd(std::move(wakeWriteEnd)) {}

    void wait(const Handlers& handlers, bool readsKeys);
    void handleSignals(const Handlers& handlers);
    void fireTimers();
    void runPosted();
    [[nodiscard]] std::chrono::milliseconds timeToWait() const;

    SignalPipe m_signals;
    FileDescriptor m_wakeReadEnd;
    FileDescriptor m_wakeWriteEnd;
    bool m_isStopped = false;
    WatchWait m_wait;
    std::vector<Timer*> m_timers;

    mutable std::mutex m_mutex;
    std::condition_variable m_backgroundEnded;
    std::deque<Action> m_posted;
    std::size_t m_inBackground = 0;
};

} // namespace menubar::ctl
