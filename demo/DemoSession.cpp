#include "demo/DemoSession.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace menubar::demo {

namespace {

/// Context use at which an agent compacts.
constexpr double fullPct = 97;

/// Once in this time the figures of an estimated session cannot be observed for a while.
constexpr double blindCycleSeconds = 180;
constexpr double blindFromSecond = 120;
constexpr double blindSeconds = 20;

constexpr std::array scripts{
    SessionScript{.provider = "acme",
                  .modelProvider = "acme-cloud",
                  .model = "model-5",
                  .dirName = "web",
                  .shortId = "7c1f02",
                  .sessionId = "7c1f02aa-5b0e-4c1d-9a53-0d6a2f1be001",
                  .parentSessionId = nullptr,
                  .contextWindow = 200'000,
                  .startPct = 93.4,
                  .pctPerSecond = 0.11,
                  .compactedPct = 14,
                  .workSeconds = 40,
                  .waitSeconds = 30,
                  .idleSeconds = 20,
                  .startSecond = 48,
                  .cacheTtlSeconds = 60,
                  .hasTerminal = true,
                  .contextSource = ContextSource::reported,
                  .earlierHandoffMinutes = 4},
    SessionScript{.provider = "acme",
                  .modelProvider = "acme-cloud",
                  .model = "model-4",
                  .dirName = "api",
                  .shortId = "19be44",
                  .sessionId = "19be4477-0c6b-4f0a-8e21-5a90cc31b002",
                  .parentSessionId = nullptr,
                  .contextWindow = 200'000,
                  .startPct = 81.2,
                  .pctPerSecond = 0.14,
                  .compactedPct = 11,
                  .workSeconds = 75,
                  .waitSeconds = 15,
                  .idleSeconds = 30,
                  .startSecond = 5,
                  .cacheTtlSeconds = 300,
                  .hasTerminal = true,
                  .contextSource = ContextSource::reported,
                  .earlierHandoffMinutes = 0},
    SessionScript{.provider = "borealis",
                  .modelProvider = "borealis",
                  .model = "nimbus-2",
                  .dirName = "billing",
                  .shortId = "e03d91",
                  .sessionId = "e03d9158-77f2-4b6e-b1c4-913f6ed0c003",
                  .parentSessionId = nullptr,
                  .contextWindow = 128'000,
                  .startPct = 72.8,
                  .pctPerSecond = 0.2,
                  .compactedPct = 18,
                  .workSeconds = 45,
                  .waitSeconds = 10,
                  .idleSeconds = 60,
                  .startSecond = 95,
                  .cacheTtlSeconds = 38,
                  .hasTerminal = true,
                  .contextSource = ContextSource::configured,
                  .earlierHandoffMinutes = 38},
    SessionScript{.provider = "quill",
                  .modelProvider = "acme-cloud",
                  .model = "model-4-mini",
                  .dirName = "search-index",
                  .shortId = "5aa7c8",
                  .sessionId = "5aa7c8b3-e1d9-4e57-8f3c-77d2f0a4d004",
                  .parentSessionId = "19be4477-0c6b-4f0a-8e21-5a90cc31b002",
                  .contextWindow = 64'000,
                  .startPct = 58.3,
                  .pctPerSecond = 0.24,
                  .compactedPct = 9,
                  .workSeconds = 60,
                  .waitSeconds = 8,
                  .idleSeconds = 12,
                  .startSecond = 2,
                  .cacheTtlSeconds = 120,
                  .hasTerminal = true,
                  .contextSource = ContextSource::reported,
                  .earlierHandoffMinutes = 0},
    SessionScript{.provider = "quill",
                  .modelProvider = "borealis",
                  .model = "nimbus-2-lite",
                  .dirName = "straßenkarte",
                  .shortId = "c4610b",
                  .sessionId = "c4610b2e-39a8-4d12-a0bb-6e4f1c97e005",
                  .parentSessionId = nullptr,
                  .contextWindow = 32'000,
                  .startPct = 34.6,
                  .pctPerSecond = 0.1,
                  .compactedPct = 12,
                  .workSeconds = 20,
                  .waitSeconds = 0,
                  .idleSeconds = 70,
                  .startSecond = 45,
                  .cacheTtlSeconds = 55,
                  .hasTerminal = true,
                  .contextSource = ContextSource::estimated,
                  .earlierHandoffMinutes = 0},
    SessionScript{.provider = "borealis",
                  .modelProvider = "borealis",
                  .model = "nimbus-2",
                  .dirName = "docs",
                  .shortId = "f8e27d",
                  .sessionId = "f8e27d60-1a4c-47f5-9d08-c2b85e3af006",
                  .parentSessionId = nullptr,
                  .contextWindow = 128'000,
                  .startPct = 12.1,
                  .pctPerSecond = 0.08,
                  .compactedPct = 10,
                  .workSeconds = 90,
                  .waitSeconds = 0,
                  .idleSeconds = 25,
                  .startSecond = 20,
                  .cacheTtlSeconds = 300,
                  .hasTerminal = false,
                  .contextSource = ContextSource::reported,
                  .earlierHandoffMinutes = 0},
};

/// Seconds of work in the first `seconds` of a script that begins at the start of its cycle.
double workedSeconds(const SessionScript& script, double seconds) {
    const double cycle = script.cycleSeconds();
    const double whole = std::floor(seconds / cycle);
    const double rest = seconds - (whole * cycle);
    return (whole * script.workSeconds) + std::min(rest, static_cast<double>(script.workSeconds));
}

SessionLifecycle lifecycleAt(const SessionScript& script, double phase) {
    if (phase < script.workSeconds) {
        return SessionLifecycle::running;
    }
    return phase < script.workSeconds + script.waitSeconds ? SessionLifecycle::needsInput : SessionLifecycle::idle;
}

bool isBlind(const SessionScript& script, double elapsed) {
    const double second = std::fmod(elapsed, blindCycleSeconds);
    return script.contextSource == ContextSource::estimated && second >= blindFromSecond &&
           second < blindFromSecond + blindSeconds;
}

} // namespace

std::span<const SessionScript> sessionScripts() {
    return scripts;
}

SessionLevel levelOf(double contextPct, Thresholds thresholds) {
    if (contextPct >= thresholds.critical) {
        return SessionLevel::critical;
    }
    return contextPct >= thresholds.warn ? SessionLevel::warn : SessionLevel::ok;
}

SessionMoment momentOf(const SessionScript& script, double elapsed, std::uint32_t seed, Thresholds thresholds) {
    const double cycle = script.cycleSeconds();
    const double shift = std::fmod(static_cast<double>(seed) * (script.startPct + 7), cycle);
    const double begin = std::fmod(script.startSecond + shift, cycle);
    const double phase = std::fmod(begin + elapsed, cycle);

    const double growth = script.pctPerSecond * (workedSeconds(script, begin + elapsed) - workedSeconds(script, begin));
    const double span = fullPct - script.compactedPct;
    const double filled = script.startPct - script.compactedPct + growth;

    SessionMoment moment;
    moment.compactions = static_cast<std::int64_t>(std::floor(filled / span));
    moment.contextPct = std::round((script.compactedPct + std::fmod(filled, span)) * 10) / 10;
    moment.contextVisible = !isBlind(script, elapsed);
    moment.level = moment.contextVisible ? levelOf(moment.contextPct, thresholds) : SessionLevel::unknown;
    moment.lifecycle = lifecycleAt(script, phase);
    moment.idleSeconds = std::max(0.0, phase - script.workSeconds);
    moment.cacheSecondsLeft = script.cacheTtlSeconds - moment.idleSeconds;
    return moment;
}

} // namespace menubar::demo
