#pragma once

#include <functional>

namespace menubar {

/// Threads for work that blocks. Any thread. Destroying it waits for every action.
class BackgroundQueue {
public:
    BackgroundQueue() = default;
    BackgroundQueue(const BackgroundQueue&) = delete;
    BackgroundQueue& operator=(const BackgroundQueue&) = delete;
    virtual ~BackgroundQueue() = default;

    /// Runs `action` at user-initiated priority. Actions may run side by side and finish in any order.
    virtual void run(std::function<void()> action) = 0;
};

} // namespace menubar
