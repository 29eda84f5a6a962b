#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace menubar::demo {

struct WatchOptions {
    std::string statusPath;
    std::string home;
    std::string configPath;
    std::optional<std::chrono::milliseconds> interval{}; ///< above 0; absent where the configuration decides
    std::uint32_t seed = 0;
};

/// Writes the status file once every interval until SIGTERM, SIGINT or SIGHUP, then once more with `stoppedAt`. Gives
/// the exit status: 0 after a signal, 1 when something could not be written (said on standard error).
[[nodiscard]] int watch(const WatchOptions& options);

} // namespace menubar::demo
