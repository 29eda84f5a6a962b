#pragma once

#include <cstddef>

namespace menubar::bench {

/// What operator new has given out in this process so far.
struct Allocations {
    std::size_t count = 0;
    std::size_t bytes = 0;
};

[[nodiscard]] Allocations allocationsSoFar();

} // namespace menubar::bench
