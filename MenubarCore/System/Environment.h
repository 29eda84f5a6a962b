#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace menubar {

/// The process environment as a value.
using Environment = std::map<std::string, std::string, std::less<>>;

/// The value of a variable; empty for one that is not set, which nothing here tells apart. The view points into
/// `environment`.
[[nodiscard]] inline std::string_view variable(const Environment& environment, std::string_view name) {
    const auto found = environment.find(name);
    return found == environment.end() ? std::string_view() : found->second;
}

std::string_view variable(const Environment&&, std::string_view) = delete;

/// Names the config file, to the daemon and to the app alike.
inline constexpr std::string_view configFileKey = "OSTREL_CONFIG_FILE";

} // namespace menubar
