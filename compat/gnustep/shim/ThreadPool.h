#pragma once

#include "MenubarApp/AppKit/BackgroundQueue.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace menubar {

/// Threads that start when there is work and none is idle, at most `limit`, and stay. Any thread.
class ThreadPool final : public BackgroundQueue {
public:
    /// As generous as the system's own pool on macOS, for the actions wait more than they compute.
    static constexpr std::size_t limit = 64;

    ThreadPool() = default;
    ~ThreadPool() override;

    void run(std::function<void()> action) override;

private:
    void work();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_waiting;
    std::size_t m_idle = 0;
    bool m_isStopping = false;
    std::vector<std::thread> m_threads;
};

} // namespace menubar
