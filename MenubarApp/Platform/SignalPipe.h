#pragma once

#include "MenubarApp/Platform/FileDescriptor.h"

#include <chrono>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include <signal.h>

namespace menubar {

/// Turns signals into bytes on a pipe, so that a loop can wait for them together with other things. One at a time in a
/// process; destroying it restores what the signals did before. Main thread.
class SignalPipe {
public:
    /// Catches the signals from now on. Absent when the system has no descriptors left.
    [[nodiscard]] static std::optional<SignalPipe> create(std::span<const int> signals);

    SignalPipe(SignalPipe&&) noexcept = default;
    SignalPipe& operator=(SignalPipe&&) = delete;
    ~SignalPipe();

    /// Readable when a signal has come.
    [[nodiscard]] int descriptor() const { return m_readEnd.get(); }

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

    SignalPipe(FileDescriptor readEnd, FileDescriptor writeEnd)
        : m_readEnd(std::move(readEnd)), m_writeEnd(std::move(writeEnd)) {}

    FileDescriptor m_readEnd; ///< not open once this was moved from
    FileDescriptor m_writeEnd;
    std::vector<Previous> m_previous;
};

} // namespace menubar
