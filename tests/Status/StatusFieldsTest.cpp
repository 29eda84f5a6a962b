#include "MenubarCore/Status/StatusFields.h"

#include "MenubarCore/JSON/JSONReader.h"
#include "MenubarCore/Status/StatusDecoder.h"

#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;

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

/// A JSON text that fits a shape.
std::string sample(const Shape& shape);

std::string sample(const RecordTable& table, const FieldRow* replaced = nullptr, const std::string& replacement = "") {
    std::string text = "{";
    for (const FieldRow& row : table.rows) {
        text += (text.size() > 1 ? ",\"" : "\"") + std::string(row.key) + "\":";
        text += &row == replaced ? replacement : sample(*row.shape);
    }
    return text + "}";
}

std::string sample(const Shape& shape) {
    switch (shape.kind) {
    case Shape::Kind::boolean: return "true";
    case Shape::Kind::integer: return "7";
    case Shape::Kind::number: return "7.5";
    case Shape::Kind::text: return "\"text\"";
    case Shape::Kind::formattedText: return "\"2025-03-04T10:15:30Z\"";
    case Shape::Kind::enumeration: return "\"" + std::string(shape.texts.front()) + "\"";
    case Shape::Kind::record: return sample(*shape.record);
    case Shape::Kind::list: return "[" + sample(*shape.element) + "]";
    case Shape::Kind::map: return "{\"k\":" + sample(*shape.element) + "}";
    case Shape::Kind::any: return "null";
    }
    return "";
}

/// Texts of every JSON type that do not fit a shape.
std::vector<std::string> misfits(const Shape& shape) {
    std::vector<std::string> result;
    const std::string own = shape.typeName() == "String" ? "\"" : sample(shape).substr(0, 1);
    for (const std::string& text : {"true", "1.5", "\"x\"", "[]", "{}"}) {
        const bool isNumber = text == "1.5" && shape.kind == Shape::Kind::number;
        if (shape.kind != Shape::Kind::any && !isNumber && !text.starts_with(own)) {
            result.push_back(text);
        }
    }
    return result;
}

template <Record R>
std::string errorOf(const std::string& document) {
    const auto record = JSONReader::decode<R>(document);
    return record ? "" : describe(record.error());
}

/// Every row of a record with what it must take and what it must refuse.
template <Record R>
void expectRowsHold() {
    const RecordTable& table = recordTable<R>;
    EXPECT_EQ(errorOf<R>(sample(table)), "");
    for (const FieldRow& row : table.rows) {
        const std::string key(row.key);
        for (const std::string& misfit : misfits(*row.shape)) {
            EXPECT_EQ(errorOf<R>(sample(table, &row, misfit)),
                      "type mismatch (" + std::string(row.shape->typeName()) + ") at " + key)
                << misfit;
        }
        const std::string withNull = errorOf<R>(sample(table, &row, "null"));
        EXPECT_EQ(withNull, row.presence == Presence::required
                                ? "missing value (" + std::string(row.shape->typeName()) + ") at " + key
                                : "");
    }
}

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

TEST(StatusFields, eachKeyFillsTheMemberOfItsName) {
    // One row at a time: a table that names the wrong member would leave the right one absent.
    const auto session = [](const std::string& member) {
        return JSONReader::decode<SessionStatus>("{" + member + "}").value();
    };
    EXPECT_EQ(session(R"("provider":"x")"), (SessionStatus{.provider = "x"}));
    EXPECT_EQ(session(R"("modelProvider":"x")"), (SessionStatus{.modelProvider = "x"}));
    EXPECT_EQ(session(R"("parentSessionId":"x")"), (SessionStatus{.parentSessionId = "x"}));
    EXPECT_EQ(session(R"("sessionId":"x")"), (SessionStatus{.sessionId = "x"}));
    EXPECT_EQ(session(R"("shortId":"x")"), (SessionStatus{.shortId = "x"}));
    EXPECT_EQ(session(R"("cwd":"x")"), (SessionStatus{.cwd = "x"}));
    EXPECT_EQ(session(R"("dirName":"x")"), (SessionStatus{.dirName = "x"}));
    EXPECT_EQ(session(R"("model":"x")"), (SessionStatus{.model = "x"}));
    EXPECT_EQ(session(R"("contextTokens":1)"), (SessionStatus{.contextTokens = 1}));
    EXPECT_EQ(session(R"("contextWindow":1)"), (SessionStatus{.contextWindow = 1}));
    EXPECT_EQ(session(R"("cacheTtlMs":1)"), (SessionStatus{.cacheTtlMs = 1}));
    EXPECT_EQ(session(R"("surfaceId":"x")"), (SessionStatus{.surfaceId = "x"}));
    EXPECT_EQ(session(R"("workspaceId":"x")"), (SessionStatus{.workspaceId = "x"}));

    const auto config = [](const std::string& member) {
        return JSONReader::decode<OstrelConfig>("{" + member + "}").value();
    };
    EXPECT_EQ(config(R"("warnContextPct":1)"), (OstrelConfig{.warnContextPct = 1}));
    EXPECT_EQ(config(R"("criticalContextPct":1)"), (OstrelConfig{.criticalContextPct = 1}));
    EXPECT_EQ(config(R"("cacheMinContextPct":1)"), (OstrelConfig{.cacheMinContextPct = 1}));
    EXPECT_EQ(config(R"("messageAgents":true)"), (OstrelConfig{.messageAgents = true}));
    EXPECT_EQ(config(R"("dryRun":true)"), (OstrelConfig{.dryRun = true}));
    EXPECT_EQ(config(R"("onCritical":["x"])"), (OstrelConfig{.onCritical = std::vector<std::string>{"x"}}));
    EXPECT_EQ(config(R"("onCacheExpiry":["x"])"), (OstrelConfig{.onCacheExpiry = std::vector<std::string>{"x"}}));
}

TEST(StatusFields, theTextsOfTheEnumerations) {
    EXPECT_EQ(rawText(SessionLevel::ok), "ok");
    EXPECT_EQ(rawText(SessionLevel::warn), "warn");
    EXPECT_EQ(rawText(SessionLevel::critical), "critical");
    EXPECT_EQ(rawText(SessionLevel::unknown), "unknown");
    EXPECT_EQ(rawText(SessionLifecycle::running), "running");
    EXPECT_EQ(rawText(SessionLifecycle::idle), "idle");
    EXPECT_EQ(rawText(SessionLifecycle::needsInput), "needsInput");
    EXPECT_EQ(rawText(SessionLifecycle::unknown), "unknown");
    EXPECT_EQ(rawText(SessionSource::store), "store");
    EXPECT_EQ(rawText(SessionSource::scan), "scan");
    EXPECT_EQ(rawText(SessionSource::unknown), "unknown");
    EXPECT_EQ(rawText(ContextSource::reported), "reported");
    EXPECT_EQ(rawText(ContextSource::configured), "configured");
    EXPECT_EQ(rawText(ContextSource::estimated), "estimated");
    EXPECT_EQ(rawText(ContextSource::unavailable), "unavailable");
    EXPECT_EQ(rawText(ContextSource::unknown), "unknown");
    EXPECT_EQ(rawText(EventKind::notify), "notify");
    EXPECT_EQ(rawText(EventKind::inject), "inject");
    EXPECT_EQ(rawText(EventKind::handoff), "handoff");
    EXPECT_EQ(rawText(EventKind::unknown), "unknown");
    EXPECT_EQ(rawText(EventLevel::ok), "ok");
    EXPECT_EQ(rawText(EventLevel::info), "info");
    EXPECT_EQ(rawText(EventLevel::warn), "warn");
    EXPECT_EQ(rawText(EventLevel::critical), "critical");
    EXPECT_EQ(rawText(EventLevel::unknown), "unknown");
    EXPECT_EQ(rawText(HandoffLocation::repo), "repo");
    EXPECT_EQ(rawText(HandoffLocation::scratchpad), "scratchpad");
    EXPECT_EQ(rawText(HandoffLocation::external), "external");
    EXPECT_EQ(rawText(HandoffLocation::unknown), "unknown");
    EXPECT_EQ(rawText(ConfigSource::cli), "cli");
    EXPECT_EQ(rawText(ConfigSource::file), "file");
    EXPECT_EQ(rawText(ConfigSource::default_), "default");
    EXPECT_EQ(rawText(ConfigSource::unknown), "unknown");
}

namespace {

template <TextEnumeration E>
void expectTextsReadBack(std::size_t count) {
    EXPECT_EQ(enumTexts<E>.size(), count);
    EXPECT_EQ(enumTexts<E>.back(), "unknown");
    for (std::size_t i = 0; i < enumTexts<E>.size(); ++i) {
        EXPECT_EQ(enumeratorOf<E>(enumTexts<E>[i]), static_cast<E>(i));
    }
    EXPECT_EQ(enumeratorOf<E>("no such text"), E::unknown);
}

} // namespace

TEST(StatusFields, everyTextReadsBackAsItsEnumerator) {
    expectTextsReadBack<SessionLevel>(4);
    expectTextsReadBack<SessionLifecycle>(4);
    expectTextsReadBack<SessionSource>(3);
    expectTextsReadBack<ContextSource>(5);
    expectTextsReadBack<EventKind>(4);
    expectTextsReadBack<EventLevel>(5);
    expectTextsReadBack<HandoffLocation>(4);
    expectTextsReadBack<ConfigSource>(4);
}
