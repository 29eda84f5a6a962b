#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace menubar::faults {

/// What happens at one system call of the portable code.
enum class Fault {
    none,
    fail, ///< the call does nothing and fails with `error`
    kill, ///< the process is killed; a write has then written half
};

/// The next calls: the one at `index` (from 0) meets the fault. One thread.
struct Plan {
    std::size_t index = 0;
    Fault fault = Fault::none;
    int error = 0;
};

/// Counts the calls made while it exists, and lets them meet its fault.
class Watch {
public:
    explicit Watch(Plan plan);
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch();

    /// The names of the calls so far, in order.
    [[nodiscard]] const std::vector<std::string>& calls() const { return m_calls; }

    /// What the call of this name that is about to be made meets.
    [[nodiscard]] Fault next(const char* name);

    [[nodiscard]] int error() const { return m_plan.error; }

private:
    Plan m_plan;
    std::vector<std::string> m_calls;
};

} // namespace menubar::faults
