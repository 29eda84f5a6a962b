#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace menubar {

/// Texts for diagnostic lines, quoted so that nothing inside them can be mistaken for another one: "a",
/// ["a", "b"], ["a": "b"]; an empty map is [:]. Any thread; no state.
[[nodiscard]] std::string debugText(std::string_view text);
[[nodiscard]] std::string debugText(const std::vector<std::string>& list);
[[nodiscard]] std::string debugText(const std::map<std::string, std::string>& map);

} // namespace menubar
