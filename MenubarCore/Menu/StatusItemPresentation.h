#pragma once

#include "MenubarCore/Menu/DaemonState.h"
#include "MenubarCore/Status/StatusFile.h"
#include "MenubarCore/Text/EnumTexts.h"

#include <span>
#include <string>
#include <string_view>

namespace menubar {

/// What the status item shows.
struct StatusItemPresentation {
    enum class Tone { ok, warn, critical, muted };

    std::string symbolName; ///< "eye", "eye.trianglebadge.exclamationmark" or "eye.slash"
    std::string title;      ///< beside the symbol; empty in compact mode
    Tone tone = Tone::muted;
    std::string tooltip;

    [[nodiscard]] static StatusItemPresentation make(const DaemonState& state, std::span<const SessionStatus> sessions,
                                                     std::span<const ProviderFailure> providerFailures, bool compact,
                                                     const TimeZone& timeZone);

    /// What a screen reader says: product, percentage when it is shown, state; for example
    /// "ostrel, 72%, Daemon running (last poll 3s ago)".
    [[nodiscard]] std::string accessibilityLabel() const;

    bool operator==(const StatusItemPresentation&) const = default;
};

template <>
inline constexpr auto enumTexts<StatusItemPresentation::Tone> =
    std::to_array<std::string_view>({"ok", "warn", "critical", "muted"});

} // namespace menubar
