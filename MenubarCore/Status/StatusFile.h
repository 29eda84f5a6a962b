#pragma once

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Text/Date.h"
#include "MenubarCore/Text/EnumTexts.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace menubar {

/// The daemon's status file as the app reads it: plain values, decoded afresh on every poll, compared by value. The
/// wire format of each record is its table in StatusFields.h; members carry the names of their keys.
///
/// Conventions: names ending in `Ms` are milliseconds; names ending in `Pct` are percent (0...100 and beyond, 72.5 is
/// 72.5 %), never fractions. An absent optional was missing or `null` in the file. Every closed vocabulary ends in
/// `unknown`, which absorbs texts that this version does not know.

enum class SessionLevel { ok, warn, critical, unknown };
template <>
inline constexpr auto enumTexts<SessionLevel> = std::to_array<std::string_view>({"ok", "warn", "critical", "unknown"});

enum class SessionLifecycle { running, idle, needsInput, unknown };
template <>
inline constexpr auto enumTexts<SessionLifecycle> =
    std::to_array<std::string_view>({"running", "idle", "needsInput", "unknown"});

enum class SessionSource { store, scan, unknown };
template <>
inline constexpr auto enumTexts<SessionSource> = std::to_array<std::string_view>({"store", "scan", "unknown"});

enum class ContextSource { reported, configured, estimated, unavailable, unknown };
template <>
inline constexpr auto enumTexts<ContextSource> =
    std::to_array<std::string_view>({"reported", "configured", "estimated", "unavailable", "unknown"});

enum class EventKind { notify, inject, handoff, unknown };
template <>
inline constexpr auto enumTexts<EventKind> =
    std::to_array<std::string_view>({"notify", "inject", "handoff", "unknown"});

enum class EventLevel { ok, info, warn, critical, unknown };
template <>
inline constexpr auto enumTexts<EventLevel> =
    std::to_array<std::string_view>({"ok", "info", "warn", "critical", "unknown"});

enum class HandoffLocation { repo, scratchpad, external, unknown };
template <>
inline constexpr auto enumTexts<HandoffLocation> =
    std::to_array<std::string_view>({"repo", "scratchpad", "external", "unknown"});

enum class ConfigSource { cli, file, default_, unknown };
template <>
inline constexpr auto enumTexts<ConfigSource> = std::to_array<std::string_view>({"cli", "file", "default", "unknown"});

/// Severity for ordering: ok 0, unknown 1, warn 2, critical 3. An unknown level deliberately outranks ok.
[[nodiscard]] int rank(SessionLevel level);

/// The words for people: "running", "idle", "needs input", "unknown".
[[nodiscard]] std::string_view label(SessionLifecycle lifecycle);

struct SessionCapabilities {
    bool message = false;                ///< whether the daemon can send messages into the session; required
    std::optional<std::string> reason{}; ///< why not, when it cannot

    bool operator==(const SessionCapabilities&) const = default;
};

struct SessionHandoff {
    std::string path{}; ///< of the hand-off document; empty when the file names none
    std::optional<Date> writtenAt{};
    HandoffLocation location = HandoffLocation::unknown;

    bool operator==(const SessionHandoff&) const = default;
};

/// One agent session.
struct SessionStatus {
    std::optional<std::string> provider{};        ///< the agent tool that runs the session
    std::optional<std::string> modelProvider{};   ///< the model vendor behind it
    std::optional<std::string> parentSessionId{}; ///< the session this one was forked from
    std::optional<std::string> sessionId{};
    std::optional<std::string> shortId{};
    std::optional<std::string> cwd{};
    std::optional<std::string> dirName{}; ///< last component of the working directory
    std::optional<std::string> model{};
    std::optional<std::int64_t> contextTokens{}; ///< tokens in the context window now
    std::optional<std::int64_t> contextWindow{}; ///< its size in tokens
    std::optional<double> contextPct{};
    std::optional<Date> contextObservedAt{};
    std::optional<ContextSource> contextSource{};
    SessionLevel level = SessionLevel::unknown;
    SessionLifecycle lifecycle = SessionLifecycle::unknown;
    SessionSource source = SessionSource::unknown;
    std::optional<Date> lastActivityAt{};
    std::optional<Date> cacheExpiresAt{}; ///< when the model's prompt cache expires
    std::optional<std::int64_t> cacheTtlMs{};
    std::optional<std::string> surfaceId{};   ///< the terminal surface that shows the session
    std::optional<std::string> workspaceId{}; ///< the terminal workspace that holds it
    std::optional<bool> currentForSurface{};
    std::optional<SessionHandoff> handoff{};
    std::optional<SessionCapabilities> capabilities{};

    /// `dirName`, else `shortId`, each when present and not empty; else "session". Points into this record.
    [[nodiscard]] std::string_view displayName() const&;
    std::string_view displayName() && = delete;

    bool operator==(const SessionStatus&) const = default;
};

/// One entry of the daemon's list of recent events.
struct OstrelEvent {
    std::optional<Date> at{};
    std::optional<std::string> provider{};
    std::optional<std::string> sessionId{};
    std::optional<std::string> shortId{};
    std::optional<std::string> dirName{};
    EventKind kind = EventKind::unknown;
    EventLevel level = EventLevel::unknown;
    std::optional<std::string> text{};
    std::optional<bool> dryRun{}; ///< the action was only simulated

    bool operator==(const OstrelEvent&) const = default;
};

/// A session provider that the daemon could not read. Both texts are required.
struct ProviderFailure {
    std::string provider{};
    std::string reason{};

    bool operator==(const ProviderFailure&) const = default;
};

/// The daemon's effective configuration.
struct OstrelConfig {
    std::optional<double> warnContextPct{};
    std::optional<double> criticalContextPct{};
    std::optional<double> cacheMinContextPct{};
    std::optional<std::int64_t> cacheLeadMs{};
    std::optional<bool> messageAgents{};
    std::optional<bool> dryRun{};
    std::optional<std::vector<std::string>> onCritical{};
    std::optional<std::vector<std::string>> onCacheExpiry{};
    std::optional<JSONValue::Object> settings{}; ///< every effective setting by key

    /// The value of one setting; null when `settings` is absent or lacks the key. Points into this record.
    [[nodiscard]] const JSONValue* setting(std::string_view key) const&;
    const JSONValue* setting(std::string_view key) && = delete;

    bool operator==(const OstrelConfig&) const = default;
};

struct ConfigFileStatus {
    std::optional<std::string> path{}; ///< of the config file that the daemon loaded
    std::optional<Date> loadedAt{};
    std::optional<bool> changedSinceLoad{}; ///< changed on disk after loading: a restart is needed to apply it

    bool operator==(const ConfigFileStatus&) const = default;
};

struct ConfigError {
    std::optional<std::string> message{};
    std::optional<std::string> path{};
    std::optional<Date> at{};

    bool operator==(const ConfigError&) const = default;
};

/// The document's top level.
struct StatusFile {
    /// The poll interval assumed when `intervalMs` is absent or not positive.
    static constexpr std::int64_t defaultIntervalMs = 30000;

    std::optional<std::int64_t> version{}; ///< not interpreted
    std::optional<std::int64_t> daemonPid{};
    std::optional<Date> startedAt{};
    std::optional<Date> at{};        ///< the daemon's last poll
    std::optional<Date> stoppedAt{}; ///< set when the daemon has shut down cleanly
    std::optional<std::int64_t> intervalMs{};
    std::optional<OstrelConfig> config{};
    std::optional<ConfigFileStatus> configFile{};
    std::optional<std::map<std::string, ConfigSource>> configSources{};
    std::optional<ConfigError> configError{};
    std::vector<SessionStatus> sessions{};
    std::vector<ProviderFailure> providerFailures{};
    std::vector<OstrelEvent> events{};

    /// Whether `configFile` is present and says that it changed since it was loaded.
    [[nodiscard]] bool configChangedSinceLoad() const;

    /// The settings fixed by a command-line flag of the daemon: the keys of `configSources` whose source is `cli`.
    [[nodiscard]] std::set<std::string> flagLockedSettings() const;

    bool operator==(const StatusFile&) const = default;
};

} // namespace menubar
