#pragma once

#include <chrono>
#include <optional>
#include <span>
#include <vector>

#include <signal.h>

namespace menubar {

/// Turns signals into bytes on a pipe, so that a loop can wait for them together with other things. One at a time in a
/// process; destroying it restores what the signals did before. Main thread.
class SignalPipe {
public:
    /// Catches the signals from now on. Absent when the system has no descriptors left.
    [[nodiscard]] static std::optional<SignalPipe> create(std::span<const int> signals);

    SignalPipe(SignalPipe&& other) noexcept;
    SignalPipe& operator=(SignalPipe&&) = delete;
    ~SignalPipe();

    /// Readable when a signal has come.
    [[nodiscard]] int descriptor() const { return m_readEnd; }

    /// The next signal that has come; absent when there is none.
    [[nodiscard]] std::optional<int> next() const;

    /// Waits for a signal until `deadline`; false when none came. One that has come is seen even when the deadline has
    /// passed before the call.
    [[nodiscard]] bool waitUntil(std::chrono::steady_clock::time_point deadline) const;

private:
    struct Previous {
        int signal;
        struct sigaction action;
    };

    SignalPipe(int readEnd, int writeEnd) : m_readEnd(readEnd), m_writeEnd(writeEnd) {}

    int m_readEnd;
    int m_writeEnd;
    std::vector<Previous> m_previous;
};

} // namespace menubar
