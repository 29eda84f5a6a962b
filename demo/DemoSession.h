#pragma once

#include "MenubarCore/Status/StatusFile.h"
#include "MenubarCore/Text/Date.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace menubar::demo {

/// The script of one made-up session. It works for a while, waits for input, idles, and starts over; while it works its
/// context fills, up to the point where it is compacted; its prompt cache lives for a time after the last activity.
struct SessionScript {
    const char* provider;
    const char* modelProvider;
    const char* model;
    const char* dirName;
    const char* shortId;
    const char* sessionId;
    const char* parentSessionId; ///< null for a session that was not forked
    std::int64_t contextWindow;  ///< tokens
    double startPct;             ///< context use at the start, percent
    double pctPerSecond;         ///< growth while it works
    double compactedPct;         ///< context use after each compaction
    int workSeconds;             ///< above 0
    int waitSeconds;
    int idleSeconds;
    int startSecond; ///< where in its cycle it is at the start
    int cacheTtlSeconds;
    bool hasTerminal;
    ContextSource contextSource;
    int earlierHandoffMinutes; ///< minutes before the start when its last hand-off was written; 0 for none

    [[nodiscard]] constexpr int cycleSeconds() const { return workSeconds + waitSeconds + idleSeconds; }
};

/// The half dozen sessions of the demonstration; at the start there is one at each level.
[[nodiscard]] std::span<const SessionScript> sessionScripts();

/// A session at one moment of its script.
struct SessionMoment {
    double contextPct = 0;        ///< one decimal
    bool contextVisible = true;   ///< whether the figures can be observed
    std::int64_t compactions = 0; ///< since the start
    SessionLevel level = SessionLevel::ok;
    SessionLifecycle lifecycle = SessionLifecycle::running;
    double idleSeconds = 0;      ///< since the last activity
    double cacheSecondsLeft = 0; ///< negative once it has expired
};

/// Context use, in percent, from which a session has each level.
struct Thresholds {
    double warn = 70;
    double critical = 90;
};

[[nodiscard]] SessionLevel levelOf(double contextPct, Thresholds thresholds);

/// The session `elapsed` seconds after the start (0 or more). `seed` shifts the cycles against one another; 0 keeps the
/// script's own. Depends on its arguments alone.
[[nodiscard]] SessionMoment momentOf(const SessionScript& script, double elapsed, std::uint32_t seed,
                                     Thresholds thresholds);

} // namespace menubar::demo
