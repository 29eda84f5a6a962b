#include "MenubarCtl/TerminalLoop.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <exception>
#include <string>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ; // NOLINT: POSIX declares it nowhere

namespace menubar::ctl {

class TerminalLoop::Timer final : public RepeatingTimer {
public:
    Timer(TerminalLoop& loop, std::chrono::milliseconds interval, Action action)
        : m_loop(loop), m_interval(interval), m_action(std::move(action)), m_next(Steady::now() + interval) {
        m_loop.m_timers.push_back(this);
    }

    ~Timer() override { std::erase(m_loop.m_timers, this); }

    [[nodiscard]] Steady::time_point next() const { return m_next; }

    /// Times that were slept through are not made up for.
    void fireIfDue() {
        if (const auto now = Steady::now(); now >= m_next) {
            m_next = std::max(m_next + m_interval, now);
            m_action();
        }
    }

private:
    TerminalLoop& m_loop;
    std::chrono::milliseconds m_interval;
    Action m_action;
    Steady::time_point m_next;
};

std::unique_ptr<TerminalLoop> TerminalLoop::create() {
    std::vector signals{SIGINT, SIGQUIT, SIGTERM, SIGWINCH, SIGTSTP};
    struct sigaction hangup{};
    if (::sigaction(SIGHUP, nullptr, &hangup) == 0 && hangup.sa_handler != SIG_IGN) {
        signals.push_back(SIGHUP); // unless nohup(1) said to live on without the terminal
    }
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        return nullptr;
    }
    FileDescriptor readEnd(ends[0]);
    FileDescriptor writeEnd(ends[1]);
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    auto pipe = SignalPipe::create(signals);
    return std::unique_ptr<TerminalLoop>(
        pipe ? new TerminalLoop(*std::move(pipe), std::move(readEnd), std::move(writeEnd)) : nullptr);
}

void TerminalLoop::post(Action action) {
    const std::scoped_lock lock(m_mutex);
    m_posted.push_back(std::move(action));
    const char byte = 0;
    // A full pipe already wakes the loop.
    [[maybe_unused]] const ssize_t written = ::write(m_wakeWriteEnd.get(), &byte, 1);
}

void TerminalLoop::runInBackground(Action action) {
    {
        const std::scoped_lock lock(m_mutex);
        ++m_inBackground;
    }
    const auto work = [this, action = std::move(action)] {
        action();
        const std::scoped_lock lock(m_mutex);
        --m_inBackground;
        m_backgroundEnded.notify_all();
    };
    try {
        std::thread(work).detach();
    } catch (const std::exception&) {
        work(); // no thread is left: late is better than never
    }
}

std::unique_ptr<RepeatingTimer> TerminalLoop::repeat(std::chrono::milliseconds interval, std::chrono::milliseconds,
                                                     Action action) {
    return std::make_unique<Timer>(*this, interval, std::move(action));
}

void TerminalLoop::run(const Handlers& handlers, const std::function<bool()>& readsKeys) {
    while (!m_isStopped) {
        wait(handlers, readsKeys && readsKeys());
        fireTimers();
        runPosted();
    }
}

std::chrono::milliseconds TerminalLoop::timeToWait() const {
    constexpr std::chrono::milliseconds longestWait = std::chrono::hours(1); // `poll` takes an int
    if (m_timers.empty()) {
        return longestWait;
    }
    const Timer* first = *std::ranges::min_element(m_timers, {}, &Timer::next);
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(first->next() - Steady::now());
    return std::clamp(left, std::chrono::milliseconds(0), longestWait);
}

void TerminalLoop::wait(const Handlers& handlers, bool readsKeys) {
    const auto outcome = m_wait.wait({.signals = m_signals.descriptor(),
                                      .posted = m_wakeReadEnd.get(),
                                      .keys = readsKeys ? STDIN_FILENO : -1,
                                      .output = STDOUT_FILENO},
                                     timeToWait());
    if (outcome.isReaderGone) {
        m_isStopped = true;
        return;
    }
    std::array<char, 256> bytes{};
    if (outcome.isPosted) {
        while (::read(m_wakeReadEnd.get(), bytes.data(), bytes.size()) > 0) {
        }
    }
    if (outcome.isSignalled) {
        handleSignals(handlers); // which may stop the job: the next wait tells whether the keys are still there
    } else if (outcome.hasKey) {
        const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        m_isStopped = count == 0; // the terminal has gone
        if (count > 0 && handlers.typed) {
            handlers.typed(std::string_view(bytes.data(), static_cast<std::size_t>(count)));
        }
    }
}

/// Suspending comes before what else has come: it is about the moment.
void TerminalLoop::handleSignals(const Handlers& handlers) {
    bool isResized = false;
    bool isSuspended = false;
    while (const auto signal = m_signals.next()) {
        isResized |= *signal == SIGWINCH;
        isSuspended |= *signal == SIGTSTP;
        m_isStopped |= *signal != SIGWINCH && *signal != SIGTSTP;
    }
    if (m_isStopped) {
        return;
    }
    if (isSuspended) {
        if (handlers.willSuspend) {
            handlers.willSuspend();
        }
        ::raise(SIGSTOP);
        if (handlers.didResume) {
            handlers.didResume();
        }
    } else if (isResized && handlers.resized) {
        handlers.resized();
    }
}

void TerminalLoop::fireTimers() {
    const std::vector<Timer*> timers = m_timers;
    for (Timer* timer : timers) {
        if (!m_isStopped && std::ranges::find(m_timers, timer) != m_timers.end()) {
            timer->fireIfDue();
        }
    }
}

void TerminalLoop::runPosted() {
    std::deque<Action> actions;
    {
        const std::scoped_lock lock(m_mutex);
        actions.swap(m_posted);
    }
    for (const Action& action : actions) {
        if (!m_isStopped) {
            action();
        }
    }
}

std::expected<int, int> TerminalLoop::runInForeground(std::vector<std::string> words) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawnattr_t attributes{};
    ::posix_spawnattr_init(&attributes);
    sigset_t all;
    sigfillset(&all);
    ::posix_spawnattr_setsigdefault(&attributes, &all);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    pid_t child = -1;
    const int error = ::posix_spawnp(&child, arguments[0], nullptr, &attributes, arguments.data(), environ);
    ::posix_spawnattr_destroy(&attributes);
    if (error != 0) {
        return std::unexpected(error);
    }
    int status = 0;
    for (;;) {
        const pid_t found = ::waitpid(child, &status, WUNTRACED);
        if (found < 0 && errno != EINTR) {
            return std::unexpected(errno);
        }
        if (found == child && WIFSTOPPED(status)) {
            ::raise(SIGSTOP); // the shell waits for all of the job; what wakes this process wakes the child
        } else if (found == child) {
            break;
        }
    }
    while (const auto signal = m_signals.next()) {
        m_isStopped |= *signal == SIGTERM || *signal == SIGHUP; // the others were typed, for the child
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 0;
}

bool TerminalLoop::settle(std::chrono::milliseconds limit) {
    std::unique_lock lock(m_mutex);
    return m_backgroundEnded.wait_for(lock, limit, [this] { return m_inBackground == 0; });
}

} // namespace menubar::ctl
