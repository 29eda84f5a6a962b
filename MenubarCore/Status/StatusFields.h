#pragma once

#include "MenubarCore/JSON/Record.h"
#include "MenubarCore/Status/StatusFile.h"
#include "MenubarCore/Text/Timestamp.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace menubar {

/// The wire format of the status file: for each record its keys, with the member and the presence of each. The texts of
/// the enumerations stand beside them, in StatusFile.h. Nothing else says what the file looks like.

template <>
struct TextForm<Date> {
    [[nodiscard]] static std::optional<Date> parse(std::string_view text) { return parseTimestamp(text); }

    [[nodiscard]] static std::string refusal(std::string_view text) {
        return "Unrecognised ISO-8601 date: " + std::string(text);
    }
};

template <>
inline constexpr auto recordRows<SessionCapabilities> = std::array{
    field::required<&SessionCapabilities::message>("message"),
    field::optional<&SessionCapabilities::reason>("reason"),
};

template <>
inline constexpr auto recordRows<SessionHandoff> = std::array{
    field::withDefault<&SessionHandoff::path>("path"),
    field::optional<&SessionHandoff::writtenAt>("writtenAt"),
    field::withDefault<&SessionHandoff::location>("location"),
};

template <>
inline constexpr auto recordRows<SessionStatus> = std::array{
    field::optional<&SessionStatus::provider>("provider"),
    field::optional<&SessionStatus::modelProvider>("modelProvider"),
    field::optional<&SessionStatus::parentSessionId>("parentSessionId"),
    field::optional<&SessionStatus::sessionId>("sessionId"),
    field::optional<&SessionStatus::shortId>("shortId"),
    field::optional<&SessionStatus::cwd>("cwd"),
    field::optional<&SessionStatus::dirName>("dirName"),
    field::optional<&SessionStatus::model>("model"),
    field::optional<&SessionStatus::contextTokens>("contextTokens"),
    field::optional<&SessionStatus::contextWindow>("contextWindow"),
    field::optional<&SessionStatus::contextPct>("contextPct"),
    field::optional<&SessionStatus::contextObservedAt>("contextObservedAt"),
    field::optional<&SessionStatus::contextSource>("contextSource"),
    field::withDefault<&SessionStatus::level>("level"),
    field::withDefault<&SessionStatus::lifecycle>("lifecycle"),
    field::withDefault<&SessionStatus::source>("source"),
    field::optional<&SessionStatus::lastActivityAt>("lastActivityAt"),
    field::optional<&SessionStatus::cacheExpiresAt>("cacheExpiresAt"),
    field::optional<&SessionStatus::cacheTtlMs>("cacheTtlMs"),
    field::optional<&SessionStatus::surfaceId>("surfaceId"),
    field::optional<&SessionStatus::workspaceId>("workspaceId"),
    field::optional<&SessionStatus::currentForSurface>("currentForSurface"),
    field::optional<&SessionStatus::handoff>("handoff"),
    field::optional<&SessionStatus::capabilities>("capabilities"),
};

template <>
inline constexpr auto recordRows<OstrelEvent> = std::array{
    field::optional<&OstrelEvent::at>("at"),
    field::optional<&OstrelEvent::provider>("provider"),
    field::optional<&OstrelEvent::sessionId>("sessionId"),
    field::optional<&OstrelEvent::shortId>("shortId"),
    field::optional<&OstrelEvent::dirName>("dirName"),
    field::withDefault<&OstrelEvent::kind>("kind"),
    field::withDefault<&OstrelEvent::level>("level"),
    field::optional<&OstrelEvent::text>("text"),
    field::optional<&OstrelEvent::dryRun>("dryRun"),
};

template <>
inline constexpr auto recordRows<ProviderFailure> = std::array{
    field::required<&ProviderFailure::provider>("provider"),
    field::required<&ProviderFailure::reason>("reason"),
};

template <>
inline constexpr auto recordRows<OstrelConfig> = std::array{
    field::optional<&OstrelConfig::warnContextPct>("warnContextPct"),
    field::optional<&OstrelConfig::criticalContextPct>("criticalContextPct"),
    field::optional<&OstrelConfig::cacheMinContextPct>("cacheMinContextPct"),
    field::optional<&OstrelConfig::cacheLeadMs>("cacheLeadMs"),
    field::optional<&OstrelConfig::messageAgents>("messageAgents"),
    field::optional<&OstrelConfig::dryRun>("dryRun"),
    field::optional<&OstrelConfig::onCritical>("onCritical"),
    field::optional<&OstrelConfig::onCacheExpiry>("onCacheExpiry"),
    field::optional<&OstrelConfig::settings>("settings"),
};

template <>
inline constexpr auto recordRows<ConfigFileStatus> = std::array{
    field::optional<&ConfigFileStatus::path>("path"),
    field::optional<&ConfigFileStatus::loadedAt>("loadedAt"),
    field::optional<&ConfigFileStatus::changedSinceLoad>("changedSinceLoad"),
};

template <>
inline constexpr auto recordRows<ConfigError> = std::array{
    field::optional<&ConfigError::message>("message"),
    field::optional<&ConfigError::path>("path"),
    field::optional<&ConfigError::at>("at"),
};

template <>
inline constexpr auto recordRows<StatusFile> = std::array{
    field::optional<&StatusFile::version>("version"),
    field::optional<&StatusFile::daemonPid>("daemonPid"),
    field::optional<&StatusFile::startedAt>("startedAt"),
    field::optional<&StatusFile::at>("at"),
    field::optional<&StatusFile::stoppedAt>("stoppedAt"),
    field::optional<&StatusFile::intervalMs>("intervalMs"),
    field::optional<&StatusFile::config>("config"),
    field::optional<&StatusFile::configFile>("configFile"),
    field::optional<&StatusFile::configSources>("configSources"),
    field::optional<&StatusFile::configError>("configError"),
    field::withDefault<&StatusFile::sessions>("sessions"),
    field::withDefault<&StatusFile::providerFailures>("providerFailures"),
    field::withDefault<&StatusFile::events>("events"),
};

} // namespace menubar
