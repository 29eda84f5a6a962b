#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace menubar {

/// Finds a program by name: first at fixed places, then in the directories of PATH. Any thread; no state.
namespace ExecutableLocator {

/// Whether an executable file is at a path.
using Exists = std::function<bool(const std::string&)>;

/// The first of `candidates` (full paths, in order) that exists, otherwise the first directory + "/" + `name` of the
/// non-empty pieces of `path` (separated by ":") that does. Nothing is normalised: "/b/" gives "/b//" + `name`. An
/// absent `path` has no directories.
[[nodiscard]] std::optional<std::string> resolve(std::string_view name, std::span<const std::string_view> candidates,
                                                 std::optional<std::string_view> path, const Exists& exists);

} // namespace ExecutableLocator

} // namespace menubar
