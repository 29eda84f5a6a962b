#pragma once

#include <chrono>
#include <functional>

#include <poll.h>

namespace menubar::ctl {

/// Waits for what can wake a display that is kept up: a signal, what a thread has posted, a key, or the loss of whoever
/// reads it. Knows which descriptors the system cannot poll, so that one of them is not an endless answer. One thread.
class WatchWait {
public:
    struct Descriptors {
        int signals = -1;
        int posted = -1;
        int keys = -1;   ///< -1: none are read
        int output = -1; ///< written to
    };

    struct Outcome {
        bool isSignalled = false;
        bool isPosted = false;
        bool hasKey = false;
        bool isReaderGone = false;
    };

    using Poll = std::function<int(pollfd*, nfds_t, int)>;

    WatchWait();
    /// With another poll(2), for tests.
    explicit WatchWait(Poll poll);

    /// Returns when there is something to tell, or after `limit` at most; perhaps sooner with nothing.
    [[nodiscard]] Outcome wait(const Descriptors& descriptors, std::chrono::milliseconds limit);

private:
    [[nodiscard]] Outcome waitWithPoll(const Descriptors& descriptors, std::chrono::milliseconds limit);
    [[nodiscard]] Outcome waitWithSelect(const Descriptors& descriptors, std::chrono::milliseconds limit);

    Poll m_poll;
    bool m_canPollKeys = true;
    bool m_canSelectKeys = true;
    bool m_canPollOutput = true;
};

} // namespace menubar::ctl
