#include "MenubarCore/Status/StatusDecoder.h"

#include "MenubarCore/JSON/JSONValue.h"

#include "tests/Status/SampleStatus.h"

#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;
using namespace std::chrono_literals;

namespace {

StatusFile decoded(std::string_view document) {
    auto file = StatusDecoder::decode(document);
    EXPECT_TRUE(file.has_value()) << document << ": " << describe(file.error());
    return file.value_or(StatusFile{});
}

std::string errorOf(std::string_view document) {
    const auto file = StatusDecoder::decode(document);
    return file ? "" : describe(file.error());
}

Date at(int hour, int minute, int second) {
    return std::chrono::sys_days{2025y / 3 / 4} + std::chrono::hours(hour) + std::chrono::minutes(minute) +
           std::chrono::seconds(second);
}

SessionStatus onlySession(const std::string& members) {
    const StatusFile file = decoded("{\"sessions\":[{" + members + "}]}");
    EXPECT_EQ(file.sessions.size(), 1U);
    return file.sessions.at(0);
}

} // namespace

TEST(StatusDecoding, anEmptyObjectHasEveryFieldAbsentAndThreeEmptyLists) {
    const StatusFile file = decoded("{}");
    EXPECT_EQ(file, StatusFile{});
    EXPECT_EQ(file.version, std::nullopt);
    EXPECT_EQ(file.config, std::nullopt);
    EXPECT_EQ(file.configSources, std::nullopt);
    EXPECT_TRUE(file.sessions.empty());
    EXPECT_TRUE(file.providerFailures.empty());
    EXPECT_TRUE(file.events.empty());
}

TEST(StatusDecoding, aFullFileFillsEveryRecord) {
    const StatusFile file = decoded(sampleStatus);
    EXPECT_EQ(file.version, 3);
    EXPECT_EQ(file.daemonPid, 4711);
    EXPECT_EQ(file.startedAt, at(8, 0, 0));
    EXPECT_EQ(file.at, at(10, 15, 30) + 123ms);
    EXPECT_EQ(file.stoppedAt, std::nullopt);
    EXPECT_EQ(file.intervalMs, 30000);

    const OstrelConfig config{
        .warnContextPct = 60,
        .criticalContextPct = 80.5,
        .cacheMinContextPct = 40,
        .cacheLeadMs = 300000,
        .messageAgents = true,
        .dryRun = false,
        .onCritical = std::vector<std::string>{"notify", "inject"},
        .onCacheExpiry = std::vector<std::string>{},
        .settings = JSONValue::Object{
            {"warn-context-pct", 60},
            {"labels", JSONValue::Array{"a/b", "café 😀", nullptr}},
            {"nested", JSONValue::Object{{"deep", JSONValue::Array{1, -0.0025, JSONValue::Object{{"x", true}}}},
                                         {"empty", JSONValue::Object{}}}}}};
    EXPECT_EQ(file.config, config);
    EXPECT_EQ(file.configFile, (ConfigFileStatus{"/Users/a/.config/ostrel/config.json", at(7, 0, 1), true}));
    EXPECT_EQ(file.configSources, (std::map<std::string, ConfigSource>{{"warn-context-pct", ConfigSource::cli},
                                                                       {"dry-run", ConfigSource::file},
                                                                       {"poll-interval", ConfigSource::default_},
                                                                       {"new", ConfigSource::unknown}}));
    EXPECT_EQ(file.configError,
              (ConfigError{"unexpected \"}\" in line 3", "/Users/a/.config/ostrel/config.json", at(10, 0, 0)}));
    EXPECT_EQ(file.providerFailures, (std::vector<ProviderFailure>{{"codex", "permission denied"}}));
    EXPECT_EQ(file.events, (std::vector<OstrelEvent>{{.at = at(10, 14, 0),
                                                      .provider = "claude",
                                                      .sessionId = "5f4dcc3b-5aa7-45d6-8a11-1d8327deb882",
                                                      .shortId = "5f4dcc3b",
                                                      .dirName = "größe",
                                                      .kind = EventKind::handoff,
                                                      .level = EventLevel::info,
                                                      .text = "wrote\na hand-off",
                                                      .dryRun = false}}));
}

TEST(StatusDecoding, aFullSessionFillsEveryMember) {
    const StatusFile file = decoded(sampleStatus);
    const SessionStatus session{
        .provider = "claude",
        .modelProvider = "anthropic",
        .parentSessionId = "0b0f4a52-52d1-4d8d-9f2c-7a3c1f0e9d11",
        .sessionId = "5f4dcc3b-5aa7-45d6-8a11-1d8327deb882",
        .shortId = "5f4dcc3b",
        .cwd = "/Users/a/src/größe",
        .dirName = "größe",
        .model = "opus",
        .contextTokens = 145000,
        .contextWindow = 200000,
        .contextPct = 72.5,
        .contextObservedAt = at(10, 15, 29) + 500ms,
        .contextSource = ContextSource::reported,
        .level = SessionLevel::warn,
        .lifecycle = SessionLifecycle::needsInput,
        .source = SessionSource::store,
        .lastActivityAt = at(10, 15, 0),
        .cacheExpiresAt = at(10, 20, 0) + 1us,
        .cacheTtlMs = 300000,
        .surfaceId = "surface:1",
        .workspaceId = "workspace:2",
        .currentForSurface = true,
        .handoff = SessionHandoff{"/Users/a/src/größe/HANDOFF.md", at(15, 40, 0), HandoffLocation::repo},
        .capabilities = SessionCapabilities{false, "no surface"}};
    EXPECT_EQ(file.sessions, (std::vector<SessionStatus>{session, SessionStatus{}}));
}

TEST(StatusDecoding, aFileCutAtAnyByteFails) {
    for (std::size_t size = 0; size < sampleStatus.size(); ++size) {
        const std::string error = errorOf(sampleStatus.substr(0, size));
        EXPECT_NE(error, "") << "cut at byte " << size;
        EXPECT_EQ(error.find('\n'), std::string::npos) << error;
    }
}

TEST(StatusDecoding, aLevelThatIsNotKnownIsUnknown) {
    EXPECT_EQ(onlySession(R"("level": "severe")").level, SessionLevel::unknown);
    EXPECT_EQ(onlySession(R"("level": "unknown")").level, SessionLevel::unknown);
    EXPECT_EQ(onlySession(R"("level": "")").level, SessionLevel::unknown);
    EXPECT_EQ(onlySession(R"("level": "OK")").level, SessionLevel::unknown);
    EXPECT_EQ(onlySession(R"("level": "ok ")").level, SessionLevel::unknown);
    EXPECT_EQ(onlySession(R"("level": "w\u0061rn")").level, SessionLevel::warn);
}

TEST(StatusDecoding, datesAreReadWithAndWithoutAFraction) {
    EXPECT_EQ(decoded(R"({"at": "2025-03-04T10:15:30Z"})").at, at(10, 15, 30));
    EXPECT_EQ(decoded(R"({"at": "2025-03-04T10:15:30.5Z"})").at, at(10, 15, 30) + 500ms);
    EXPECT_EQ(decoded(R"({"at": "2025-03-04T10:15:30+01:00"})").at, at(9, 15, 30));
    EXPECT_EQ(StatusDecoder::parseDate("2025-03-04T10:15:30.5Z"), at(10, 15, 30) + 500ms);
    EXPECT_EQ(StatusDecoder::parseDate("yesterday"), std::nullopt);
}

TEST(StatusDecoding, aDateInAnotherFormFailsWithItsText) {
    EXPECT_EQ(errorOf(R"({"at": "2025-03-04 10:15:30"})"), "Unrecognised ISO-8601 date: 2025-03-04 10:15:30");
    EXPECT_EQ(errorOf(R"({"at": "2025-13-01"})"), "Unrecognised ISO-8601 date: 2025-13-01");
    EXPECT_EQ(errorOf(R"({"at": ""})"), "Unrecognised ISO-8601 date: ");
    EXPECT_EQ(errorOf(R"({"at": "caf\u00e9"})"), "Unrecognised ISO-8601 date: café");
    EXPECT_EQ(errorOf(R"({"at": 1741083330})"), "type mismatch (String) at at");
}

TEST(StatusDecoding, aMissingRequiredKeyFailsTheWholeDocument) {
    EXPECT_EQ(errorOf(R"({"sessions":[{},{"capabilities":{}}]})"), "missing key message");
    EXPECT_EQ(errorOf(R"({"providerFailures":[{"provider":"x"}]})"), "missing key reason");
    EXPECT_EQ(errorOf(R"({"providerFailures":[{"reason":"x"}]})"), "missing key provider");
    EXPECT_EQ(errorOf(R"({"providerFailures":[{}]})"), "missing key provider");
}

TEST(StatusDecoding, aMissingKeyKnowsItsPathThoughTheTextDoesNotSayIt) {
    const auto file = StatusDecoder::decode(R"({"sessions":[{},{"capabilities":{}}]})");
    ASSERT_FALSE(file.has_value());
    EXPECT_EQ(file.error().kind, DecodingError::Kind::keyNotFound);
    EXPECT_EQ(describe(file.error().path), "sessions.Index 1.capabilities");
}

TEST(StatusDecoding, nullInAListOrAMapOrAtTheTopIsAMissingValue) {
    EXPECT_EQ(errorOf("null"), "missing value (Dictionary<String, Any>) at ");
    EXPECT_EQ(errorOf("[]"), "type mismatch (Dictionary<String, Any>) at ");
    EXPECT_EQ(errorOf(R"({"sessions":[{},null]})"), "missing value (Dictionary<String, Any>) at sessions.Index 1");
    EXPECT_EQ(errorOf(R"({"config":{"onCritical":["a",null]}})"),
              "missing value (String) at config.onCritical.Index 1");
    EXPECT_EQ(errorOf(R"({"configSources":{"dryRun":null}})"), "missing value (String) at configSources.dryRun");
}

TEST(StatusDecoding, nullSettingsAreValues) {
    const StatusFile file = decoded(R"({"config":{"settings":{"a":null}}})");
    ASSERT_NE(file.config->setting("a"), nullptr);
    EXPECT_TRUE(file.config->setting("a")->isNull());
}

TEST(StatusDecoding, ofDuplicateKeysTheLastWinsAndOnlyItIsChecked) {
    EXPECT_EQ(decoded(R"({"version":"x","version":1})").version, 1);
    EXPECT_EQ(decoded(R"({"version":1,"version":null})").version, std::nullopt);
    EXPECT_EQ(decoded(R"({"version":1,"version":2})").version, 2);
    EXPECT_EQ(errorOf(R"({"version":1,"version":"x"})"), "type mismatch (Int) at version");
    EXPECT_EQ(decoded(R"({"version":"x","\u0076ersion":3})").version, 3);
}

TEST(StatusDecoding, duplicateContainersAreReplacedNotMerged) {
    const StatusFile file = decoded(R"({"sessions":[{"shortId":"a"},{"level":5}],"sessions":[{"shortId":"b"}],
                                        "config":{"dryRun":true,"onCritical":["x"]},"config":{"cacheLeadMs":1},
                                        "configSources":{"a":"cli"},"configSources":{"b":"cli"}})");
    ASSERT_EQ(file.sessions.size(), 1U);
    EXPECT_EQ(file.sessions[0].shortId, "b");
    EXPECT_EQ(file.config, (OstrelConfig{.cacheLeadMs = 1}));
    EXPECT_EQ(file.flagLockedSettings(), std::set<std::string>{"b"});
}

TEST(StatusDecoding, duplicatesCountInsideRecordsAndMapsToo) {
    const std::string session = R"("level":2,"level":"ok","handoff":{"path":7},"handoff":{"path":"p"},)"
                                R"("capabilities":{"message":null,"message":true})";
    EXPECT_EQ(onlySession(session).level, SessionLevel::ok);
    EXPECT_EQ(onlySession(session).handoff->path, "p");
    EXPECT_EQ(onlySession(session).capabilities->message, true);
    EXPECT_EQ(onlySession(R"("level":"warn","level":null)").level, SessionLevel::unknown);
    EXPECT_EQ(decoded(R"({"configSources":{"a":1,"b":"cli","a":"cli"}})").flagLockedSettings(),
              (std::set<std::string>{"a", "b"}));
    EXPECT_EQ(decoded(R"({"configSources":{"a":"cli","a":"file"}})").flagLockedSettings(), std::set<std::string>{});
    EXPECT_EQ(errorOf(R"({"configSources":{"a":"cli","a":null}})"), "missing value (String) at configSources.a");
    EXPECT_EQ(decoded(R"({"config":{"settings":{"a":1,"a":null}}})").config->setting("a")->isNull(), true);
}

TEST(StatusDecoding, aSyntaxErrorAnywhereBeatsAMismatch) {
    EXPECT_EQ(errorOf(R"({"version":"x","later":[1,]})"), "expected a value at line 1, column 27");
    EXPECT_EQ(errorOf(R"({"version":"x"} x)"), "expected the end of the document at line 1, column 17");
    EXPECT_EQ(errorOf("[1,"), "expected a value at line 1, column 4, where the document ends");
}

TEST(StatusDecoding, aMalformedValueUnderAnUnreadKeyFailsTheDocument) {
    for (const char* value :
         {"01", "tru", "\"\\x\"", "\"\\ud800\"", "[1,]", "{\"a\"}", "1e400", "[[[\"\x01\"]]]", "\"\xFF\""}) {
        EXPECT_NE(errorOf("{\"nobody reads this\": " + std::string(value) + "}"), "") << value;
        EXPECT_NE(errorOf("{\"version\": {\"a\":" + std::string(value) + "}}"), "") << value;
    }
}

TEST(StatusDecoding, amongSeveralErrorsTheReportedOneIsAlwaysTheSame) {
    // By row of the record, whatever the order in the file.
    EXPECT_EQ(errorOf(R"({"version":"x","daemonPid":"y"})"), "type mismatch (Int) at version");
    EXPECT_EQ(errorOf(R"({"daemonPid":"y","version":"x"})"), "type mismatch (Int) at version");
    EXPECT_EQ(errorOf(R"({"providerFailures":[{"reason":1}]})"), "missing key provider");
    EXPECT_EQ(errorOf(R"({"providerFailures":[{"provider":1}]})"),
              "type mismatch (String) at providerFailures.Index 0.provider");
    // By position in a list, by key in a map.
    EXPECT_EQ(errorOf(R"({"sessions":[{},1,{"level":1}]})"),
              "type mismatch (Dictionary<String, Any>) at sessions.Index 1");
    EXPECT_EQ(errorOf(R"({"configSources":{"b":1,"a":1}})"), "type mismatch (String) at configSources.a");
}

TEST(StatusDecoding, unknownKeysAreIgnoredWhateverTheyHold) {
    EXPECT_EQ(decoded(R"({"x":{"sessions":[1]},"Version":"x","version ":[],"":null,"versio":1,"versionn":{}})"),
              StatusFile{});
}

TEST(StatusDecoding, tenThousandSessionsAreReadInOrder) {
    std::string document = "{\"sessions\":[";
    for (int i = 0; i < 10'000; ++i) {
        document += (i == 0 ? "" : ",") + std::string("{\"shortId\":\"") + std::to_string(i) + "\"}";
    }
    const StatusFile file = decoded(document + "]}");
    ASSERT_EQ(file.sessions.size(), 10'000U);
    EXPECT_EQ(file.sessions.back().shortId, "9999");
}
