#pragma once

#include "tests/e2e/ChildProcess.h"

#include <chrono>
#include <thread>

namespace menubar::e2e {

/// Whether the condition becomes true while a test has patience. It is looked at again and again.
template <typename Condition>
[[nodiscard]] bool eventually(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + ChildProcess::patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

} // namespace menubar::e2e
