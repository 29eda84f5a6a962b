#include "MenubarCore/Menu/StatusItemPresentation.h"

#include "MenubarCore/Menu/Formatting.h"
#include "MenubarCore/Menu/Selection.h"

#include <algorithm>

namespace menubar {

namespace {

using Tone = StatusItemPresentation::Tone;

struct Look {
    std::string_view symbolName;
    Tone tone;
};

constexpr Look allWell{.symbolName = "eye", .tone = Tone::ok};
constexpr Look muted{.symbolName = "eye.slash", .tone = Tone::muted};

constexpr Look alarmed(Tone tone) {
    return {.symbolName = "eye.trianglebadge.exclamationmark", .tone = tone};
}

bool isIncomplete(const SessionStatus& session) {
    return !session.contextPct || session.level == SessionLevel::unknown;
}

Look runningLook(const SessionStatus* worst, bool isDegraded) {
    switch (worst == nullptr ? SessionLevel::ok : worst->level) {
    case SessionLevel::critical: return alarmed(Tone::critical);
    case SessionLevel::warn: return alarmed(Tone::warn);
    case SessionLevel::unknown: return muted;
    case SessionLevel::ok: return isDegraded ? muted : allWell;
    }
    return muted;
}

} // namespace

StatusItemPresentation StatusItemPresentation::make(const DaemonState& state, std::span<const SessionStatus> sessions,
                                                    std::span<const ProviderFailure> providerFailures, bool compact,
                                                    const TimeZone& timeZone) {
    const SessionStatus* const worst = Selection::worst(sessions);
    const bool isDegraded = !providerFailures.empty() || std::ranges::any_of(sessions, isIncomplete);
    const bool hasFigures = state.isRunning() || state.kind() == DaemonState::Case::stale;
    const std::string percent =
        Formatting::percent(hasFigures && worst != nullptr ? worst->contextPct : std::optional<double>());
    const Look look = state.isRunning() ? runningLook(worst, isDegraded) : muted;
    const std::string stateTitle = state.title(timeZone);
    // Compact mode tells of missing figures in every state, since it has no title that could show "--".
    const bool tellsDegraded = isDegraded && (compact || state.isRunning());
    return {
        .symbolName = std::string(look.symbolName),
        .title = compact ? "" : percent,
        .tone = look.tone,
        .tooltip = (compact ? Formatting::compactTooltip(stateTitle, percent) : stateTitle) +
                   (tellsDegraded ? " · some context unavailable" : ""),
    };
}

std::string StatusItemPresentation::accessibilityLabel() const {
    std::string label = "ostrel";
    // "--" says that no percentage is known; read aloud it says nothing.
    if (!title.empty() && title != "--") {
        label += ", " + title;
    }
    return tooltip.empty() ? label : label + ", " + tooltip;
}

} // namespace menubar
