#include "MenubarCtl/WatchWait.h"

#include "MenubarCtl/Terminal.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include <sys/select.h>

namespace menubar::ctl {

namespace {

constexpr short hasGone = POLLERR | POLLHUP;

timeval toTimeval(std::chrono::milliseconds duration) {
    timeval time{};
    time.tv_sec = static_cast<decltype(time.tv_sec)>(duration.count() / 1000);
    time.tv_usec = static_cast<decltype(time.tv_usec)>(duration.count() % 1000 * 1000);
    return time;
}

} // namespace

WatchWait::WatchWait() : WatchWait(::poll) {}

WatchWait::WatchWait(Poll poll) : m_poll(std::move(poll)) {}

WatchWait::Outcome WatchWait::wait(const Descriptors& descriptors, std::chrono::milliseconds limit) {
    // macOS cannot poll /dev/tty, but it can select it.
    const bool isSelected = descriptors.keys >= 0 && !m_canPollKeys && m_canSelectKeys;
    return isSelected ? waitWithSelect(descriptors, limit) : waitWithPoll(descriptors, limit);
}

WatchWait::Outcome WatchWait::waitWithPoll(const Descriptors& descriptors, std::chrono::milliseconds limit) {
    // Without POLLHUP macOS never tells of a reader that has gone. A terminal that goes is told of by a signal, and one
    // that is asked might answer for the keys that nobody reads from it.
    const short outputEvents = isTerminal(descriptors.output) ? 0 : POLLHUP;
    std::array<pollfd, 4> polled{{
        {.fd = descriptors.signals, .events = POLLIN, .revents = 0},
        {.fd = descriptors.posted, .events = POLLIN, .revents = 0},
        {.fd = m_canPollKeys ? descriptors.keys : -1, .events = POLLIN, .revents = 0},
        {.fd = m_canPollOutput ? descriptors.output : -1, .events = outputEvents, .revents = 0},
    }};
    if (m_poll(polled.data(), polled.size(), static_cast<int>(limit.count())) <= 0) {
        return {};
    }
    const auto& [signals, posted, keys, output] = polled;
    m_canPollKeys = m_canPollKeys && (keys.revents & POLLNVAL) == 0;
    m_canPollOutput = m_canPollOutput && (output.revents & POLLNVAL) == 0;
    return {.isSignalled = signals.revents != 0,
            .isPosted = posted.revents != 0,
            .hasKey = (keys.revents & POLLIN) != 0,
            .isReaderGone = ((keys.revents | output.revents) & hasGone) != 0};
}

WatchWait::Outcome WatchWait::waitWithSelect(const Descriptors& descriptors, std::chrono::milliseconds limit) {
    fd_set ready;
    FD_ZERO(&ready);
    const std::array waited{descriptors.signals, descriptors.posted, descriptors.keys};
    for (const int descriptor : waited) {
        FD_SET(descriptor, &ready);
    }
    timeval time = toTimeval(limit);
    const int count = ::select(std::ranges::max(waited) + 1, &ready, nullptr, nullptr, &time);
    if (count < 0) {
        m_canSelectKeys = errno == EINTR;
        return {};
    }
    return {.isSignalled = FD_ISSET(descriptors.signals, &ready) != 0,
            .isPosted = FD_ISSET(descriptors.posted, &ready) != 0,
            .hasKey = FD_ISSET(descriptors.keys, &ready) != 0,
            .isReaderGone = false};
}

} // namespace menubar::ctl
