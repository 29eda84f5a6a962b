#include "compat/gnustep/shim/ThreadPool.h"

#include <utility>

namespace menubar {

ThreadPool::~ThreadPool() {
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
    }
    m_changed.notify_all();
    for (std::thread& thread : m_threads) {
        thread.join();
    }
}

void ThreadPool::run(std::function<void()> action) {
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back(std::move(action));
        if (m_idle < m_waiting.size() && m_threads.size() < limit) {
            m_threads.emplace_back([this] { work(); });
        }
    }
    m_changed.notify_one();
}

void ThreadPool::work() {
    std::unique_lock lock(m_mutex);
    while (true) {
        ++m_idle;
        m_changed.wait(lock, [this] { return m_isStopping || !m_waiting.empty(); });
        --m_idle;
        if (m_waiting.empty()) {
            return;
        }
        const auto action = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        action();
        lock.lock();
    }
}

} // namespace menubar
