#pragma once

#include <cstdio>
#include <cstdlib>

namespace menubar::fuzz {

/// Ends the run, for the fuzzer to record its input, when what must hold does not.
inline void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

} // namespace menubar::fuzz
