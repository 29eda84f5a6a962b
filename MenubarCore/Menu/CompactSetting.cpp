#include "MenubarCore/Menu/CompactSetting.h"

#include "MenubarCore/Text/Case.h"

#include <algorithm>
#include <array>

namespace menubar {

std::optional<bool> CompactSetting::parse(std::string_view text) {
    static constexpr auto onWords = std::to_array<std::string_view>({"1", "true", "yes", "on"});
    static constexpr auto offWords = std::to_array<std::string_view>({"0", "false", "no", "off"});
    const std::string word = lowercased(trimmed(text));
    if (std::ranges::find(onWords, word) != onWords.end()) {
        return true;
    }
    if (std::ranges::find(offWords, word) != offWords.end()) {
        return false;
    }
    return std::nullopt;
}

CompactSetting CompactSetting::resolve(const Environment& environment, std::optional<bool> stored) {
    if (const std::optional<bool> compact = parse(variable(environment, environmentKey))) {
        return {.compact = *compact, .source = Source::environment};
    }
    return stored ? CompactSetting{.compact = *stored, .source = Source::defaults} : CompactSetting{};
}

} // namespace menubar
