#pragma once

#include "MenubarCore/System/Environment.h"
#include "MenubarCore/Text/EnumTexts.h"

#include <optional>
#include <string_view>

namespace menubar {

/// Icon-only mode and who decided it.
struct CompactSetting {
    enum class Source { environment, defaults, builtIn };

    static constexpr std::string_view environmentKey = "OSTREL_MENUBAR_COMPACT";
    static constexpr std::string_view defaultsKey = "compact"; ///< a bool in the defaults domain "ostrel-menubar"

    bool compact = false;
    Source source = Source::builtIn;

    [[nodiscard]] bool isLockedByEnvironment() const { return source == Source::environment; }

    /// "1", "true", "yes", "on" and "0", "false", "no", "off" in any case, white space around them ignored.
    [[nodiscard]] static std::optional<bool> parse(std::string_view text);

    /// Environment over stored default over off; an environment value that does not parse counts as absent.
    [[nodiscard]] static CompactSetting resolve(const Environment& environment, std::optional<bool> stored);

    bool operator==(const CompactSetting&) const = default;
};

template <>
inline constexpr auto enumTexts<CompactSetting::Source> =
    std::to_array<std::string_view>({"environment", "defaults", "builtIn"});

} // namespace menubar
