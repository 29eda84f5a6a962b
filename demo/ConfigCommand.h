#pragma once

#include <optional>
#include <span>
#include <string>

namespace menubar::demo {

/// `config schema` and `config validate PATH [--json]`; `arguments` are those after "config". Gives the exit status: 0
/// done or valid, 1 not valid (said on standard output), absent when the command line is wrong.
[[nodiscard]] std::optional<int> config(std::span<const std::string> arguments);

} // namespace menubar::demo
