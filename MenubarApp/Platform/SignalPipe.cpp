#include "MenubarApp/Platform/SignalPipe.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace menubar {

namespace {

std::atomic<int> signalDescriptor{-1};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler reads it");

extern "C" void forwardSignal(int signal) {
    const int savedError = errno;
    const char byte = static_cast<char>(signal);
    // A full pipe already wakes the loop.
    [[maybe_unused]] const ssize_t written = ::write(signalDescriptor.load(), &byte, 1);
    errno = savedError;
}

} // namespace

std::optional<SignalPipe> SignalPipe::create(std::span<const int> signals) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        return std::nullopt;
    }
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    SignalPipe pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
    signalDescriptor = ends[1];
    struct sigaction action{};
    action.sa_handler = forwardSignal;
    sigemptyset(&action.sa_mask);
    for (const int signal : signals) {
        Previous previous{.signal = signal, .action = {}};
        if (::sigaction(signal, &action, &previous.action) == 0) {
            pipe.m_previous.push_back(previous);
        }
    }
    return pipe;
}

SignalPipe::~SignalPipe() {
    if (!m_readEnd.isOpen()) {
        return;
    }
    for (const Previous& previous : m_previous) {
        ::sigaction(previous.signal, &previous.action, nullptr);
    }
    signalDescriptor = -1;
}

std::optional<int> SignalPipe::next() const {
    char byte = 0;
    return ::read(m_readEnd.get(), &byte, 1) == 1 ? std::optional<int>(byte) : std::nullopt;
}

bool SignalPipe::waitUntil(std::chrono::steady_clock::time_point deadline) const {
    using std::chrono::milliseconds;
    constexpr milliseconds longestWait = std::chrono::hours(1); // `poll` takes an int
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now());
        pollfd descriptor{.fd = m_readEnd.get(), .events = POLLIN, .revents = 0};
        if (::poll(&descriptor, 1, static_cast<int>(std::clamp(left, milliseconds(0), longestWait).count())) > 0) {
            return true;
        }
        if (left.count() <= 0) {
            return false;
        }
    }
}

} // namespace menubar
