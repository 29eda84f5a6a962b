#pragma once

#include <string>

namespace menubar::bench {

/// A status file as the daemon writes it, about 800 bytes a session: every field filled, one hand-off in four, 20
/// events. Always the same bytes for the same count.
[[nodiscard]] std::string sampleStatus(int sessions);

} // namespace menubar::bench
