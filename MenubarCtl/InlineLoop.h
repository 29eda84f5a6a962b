#pragma once

#include "MenubarApp/Platform/MainLoop.h"

#include <deque>
#include <utility>

namespace menubar::ctl {

/// The main loop of a command that does one thing and ends: work for the background is done at once, in place, and
/// what is posted waits for `drain`. There is no time in it, so no timer ever fires. Main thread.
class InlineLoop final : public MainLoop {
public:
    void post(Action action) override { m_posted.push_back(std::move(action)); }

    void runInBackground(Action action) override { action(); }

    [[nodiscard]] std::unique_ptr<RepeatingTimer> repeat(std::chrono::milliseconds, std::chrono::milliseconds,
                                                         Action) override {
        return std::make_unique<RepeatingTimer>();
    }

    /// Runs what is posted, and what that posts, until nothing is left.
    void drain() {
        while (!m_posted.empty()) {
            const Action action = std::move(m_posted.front());
            m_posted.pop_front();
            action();
        }
    }

private:
    std::deque<Action> m_posted;
};

} // namespace menubar::ctl
