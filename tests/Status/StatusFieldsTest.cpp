#include "MenubarCore/Status/StatusFields.h"

#include "tests/support/RecordRows.h"

#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;
using menubar::testing_support::expectRowsHold;

namespace {

template <Record R>
std::vector<std::string> keys() {
    std::vector<std::string> result;
    for (const FieldRow& row : recordTable<R>.rows) {
        result.emplace_back(row.key);
    }
    return result;
}

template <Record R>
std::set<std::string> keysWith(Presence presence) {
    std::set<std::string> result;
    for (const FieldRow& row : recordTable<R>.rows) {
        if (row.presence == presence) {
            result.emplace(row.key);
        }
    }
    return result;
}

using Keys = std::vector<std::string>;
using KeySet = std::set<std::string>;

} // namespace

// The keys are written out here, so that a renamed member cannot rename a key.

TEST(StatusFields, theKeysOfTheStatusFile) {
    EXPECT_EQ(keys<StatusFile>(),
              (Keys{"version", "daemonPid", "startedAt", "at", "stoppedAt", "intervalMs", "config", "configFile",
                    "configSources", "configError", "sessions", "providerFailures", "events"}));
    EXPECT_EQ(keysWith<StatusFile>(Presence::required), KeySet{});
    EXPECT_EQ(keysWith<StatusFile>(Presence::withDefault), (KeySet{"sessions", "providerFailures", "events"}));
}

TEST(StatusFields, theKeysOfASession) {
    EXPECT_EQ(keys<SessionStatus>(),
              (Keys{"provider",    "modelProvider",     "parentSessionId", "sessionId",     "shortId",
                    "cwd",         "dirName",           "model",           "contextTokens", "contextWindow",
                    "contextPct",  "contextObservedAt", "contextSource",   "level",         "lifecycle",
                    "source",      "lastActivityAt",    "cacheExpiresAt",  "cacheTtlMs",    "surfaceId",
                    "workspaceId", "currentForSurface", "handoff",         "capabilities"}));
    EXPECT_EQ(keysWith<SessionStatus>(Presence::required), KeySet{});
    EXPECT_EQ(keysWith<SessionStatus>(Presence::withDefault), (KeySet{"level", "lifecycle", "source"}));
}

TEST(StatusFields, theKeysOfCapabilities) {
    EXPECT_EQ(keys<SessionCapabilities>(), (Keys{"message", "reason"}));
    EXPECT_EQ(keysWith<SessionCapabilities>(Presence::required), KeySet{"message"});
}

TEST(StatusFields, theKeysOfAHandoff) {
    EXPECT_EQ(keys<SessionHandoff>(), (Keys{"path", "writtenAt", "location"}));
    EXPECT_EQ(keysWith<SessionHandoff>(Presence::withDefault), (KeySet{"path", "location"}));
}

TEST(StatusFields, theKeysOfAnEvent) {
    EXPECT_EQ(keys<OstrelEvent>(),
              (Keys{"at", "provider", "sessionId", "shortId", "dirName", "kind", "level", "text", "dryRun"}));
    EXPECT_EQ(keysWith<OstrelEvent>(Presence::withDefault), (KeySet{"kind", "level"}));
}

TEST(StatusFields, theKeysOfAProviderFailure) {
    EXPECT_EQ(keys<ProviderFailure>(), (Keys{"provider", "reason"}));
    EXPECT_EQ(keysWith<ProviderFailure>(Presence::required), (KeySet{"provider", "reason"}));
}

TEST(StatusFields, theKeysOfTheConfiguration) {
    EXPECT_EQ(keys<OstrelConfig>(), (Keys{"warnContextPct", "criticalContextPct", "cacheMinContextPct", "cacheLeadMs",
                                          "messageAgents", "dryRun", "onCritical", "onCacheExpiry", "settings"}));
    EXPECT_EQ(keysWith<OstrelConfig>(Presence::optional).size(), 9U);
}

TEST(StatusFields, theKeysOfTheConfigFileAndItsError) {
    EXPECT_EQ(keys<ConfigFileStatus>(), (Keys{"path", "loadedAt", "changedSinceLoad"}));
    EXPECT_EQ(keys<ConfigError>(), (Keys{"message", "path", "at"}));
}

TEST(StatusFields, everyRowTakesItsOwnTypeAndRefusesTheOthersByName) {
    expectRowsHold<StatusFile>();
    expectRowsHold<SessionStatus>();
    expectRowsHold<SessionCapabilities>();
    expectRowsHold<SessionHandoff>();
    expectRowsHold<OstrelEvent>();
    expectRowsHold<ProviderFailure>();
    expectRowsHold<OstrelConfig>();
    expectRowsHold<ConfigFileStatus>();
    expectRowsHold<ConfigError>();
}

namespace {

/// The enumerators with their texts, in order, written out so that a renamed enumerator cannot rename a text.
template <TextEnumeration E>
void expectTexts(const std::vector<std::pair<E, std::string_view>>& texts) {
    ASSERT_EQ(enumTexts<E>.size(), texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(static_cast<E>(i), texts[i].first);
        EXPECT_EQ(rawText(texts[i].first), texts[i].second);
        EXPECT_EQ(enumeratorOf<E>(texts[i].second), texts[i].first);
    }
    EXPECT_EQ(texts.back(), std::pair(E::unknown, std::string_view("unknown")));
    EXPECT_EQ(enumeratorOf<E>("no such text"), E::unknown);
}

} // namespace

TEST(StatusFields, everyEnumeratorHasItsTextAndIsReadFromIt) {
    expectTexts<SessionLevel>({{SessionLevel::ok, "ok"},
                               {SessionLevel::warn, "warn"},
                               {SessionLevel::critical, "critical"},
                               {SessionLevel::unknown, "unknown"}});
    expectTexts<SessionLifecycle>({{SessionLifecycle::running, "running"},
                                   {SessionLifecycle::idle, "idle"},
                                   {SessionLifecycle::needsInput, "needsInput"},
                                   {SessionLifecycle::unknown, "unknown"}});
    expectTexts<SessionSource>(
        {{SessionSource::store, "store"}, {SessionSource::scan, "scan"}, {SessionSource::unknown, "unknown"}});
    expectTexts<ContextSource>({{ContextSource::reported, "reported"},
                                {ContextSource::configured, "configured"},
                                {ContextSource::estimated, "estimated"},
                                {ContextSource::unavailable, "unavailable"},
                                {ContextSource::unknown, "unknown"}});
    expectTexts<EventKind>({{EventKind::notify, "notify"},
                            {EventKind::inject, "inject"},
                            {EventKind::handoff, "handoff"},
                            {EventKind::unknown, "unknown"}});
    expectTexts<EventLevel>({{EventLevel::ok, "ok"},
                             {EventLevel::info, "info"},
                             {EventLevel::warn, "warn"},
                             {EventLevel::critical, "critical"},
                             {EventLevel::unknown, "unknown"}});
    expectTexts<HandoffLocation>({{HandoffLocation::repo, "repo"},
                                  {HandoffLocation::scratchpad, "scratchpad"},
                                  {HandoffLocation::external, "external"},
                                  {HandoffLocation::unknown, "unknown"}});
    expectTexts<ConfigSource>({{ConfigSource::cli, "cli"},
                               {ConfigSource::file, "file"},
                               {ConfigSource::default_, "default"},
                               {ConfigSource::unknown, "unknown"}});
}
