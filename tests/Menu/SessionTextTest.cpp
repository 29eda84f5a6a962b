#include "MenubarCore/Menu/Formatting.h"

#include "Records.h"

#include <utility>

#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::records;

namespace {

std::string line(const SessionStatus& session) {
    return Formatting::sessionLine(session, now);
}

std::string detailOf(const SessionStatus& session) {
    return Formatting::sessionDetail(session, now);
}

} // namespace

TEST(SessionLine, anOrdinarySessionNamesEverythingOnce) {
    SessionStatus api = session("api", 72);
    api.provider = "acme";
    api.model = "claude-model-4";
    api.lifecycle = SessionLifecycle::running;
    api.cacheExpiresAt = secondsAhead(270);
    EXPECT_EQ(line(api), "api · acme · model-4 · 72% · running · cache expires in 4m");
}

TEST(SessionLine, aSessionInTroubleBeginsWithItsLevel) {
    SessionStatus web = session("web", 93, SessionLevel::critical);
    web.model = "model-5";
    web.lifecycle = SessionLifecycle::needsInput;
    web.cacheExpiresAt = secondsAgo(125);
    web.handoff = handoff("/repo/HANDOFF.md");
    EXPECT_EQ(line(web), "[critical] web · model-5 · 93% · needs input · cache expired 2m ago · handoff");
}

TEST(SessionLine, everyLevelButOkIsNamed) {
    EXPECT_EQ(line(session("a", 1, SessionLevel::ok)), "a · unknown · 1% · unknown");
    EXPECT_EQ(line(session("a", 1, SessionLevel::warn)), "[warn] a · unknown · 1% · unknown");
    EXPECT_EQ(line(session("a", 1, SessionLevel::critical)), "[critical] a · unknown · 1% · unknown");
    EXPECT_EQ(line(session("a", 1, SessionLevel::unknown)), "[unknown] a · unknown · 1% · unknown");
}

TEST(SessionLine, everyLifecycleHasItsWords) {
    for (const auto& [lifecycle, words] : {std::pair{SessionLifecycle::running, "running"},
                                           {SessionLifecycle::idle, "idle"},
                                           {SessionLifecycle::needsInput, "needs input"},
                                           {SessionLifecycle::unknown, "unknown"}}) {
        SessionStatus a = session("a", 1);
        a.lifecycle = lifecycle;
        EXPECT_EQ(line(a), "a · unknown · 1% · " + std::string(words));
    }
}

TEST(SessionLine, anEmptyProviderIsAnEmptyItem) {
    SessionStatus api = session("api", 1);
    api.provider = "";
    EXPECT_EQ(line(api), "api ·  · unknown · 1% · unknown");
}

TEST(SessionLine, aSessionWithoutAnythingIsStillALine) {
    EXPECT_EQ(line(SessionStatus()), "[unknown] session · unknown · -- · unknown");
}

TEST(SessionLine, theCacheExpiresInNothingAtTheVeryMomentAndHasExpiredAfterIt) {
    SessionStatus api = session("api", 1);
    api.cacheExpiresAt = now;
    EXPECT_TRUE(line(api).ends_with(" · cache expires in 0s"));
    api.cacheExpiresAt = secondsAgo(0.000001);
    EXPECT_TRUE(line(api).ends_with(" · cache expired 0s ago"));
    api.cacheExpiresAt = secondsAgo(60);
    EXPECT_TRUE(line(api).ends_with(" · cache expired 1m ago"));
    api.cacheExpiresAt = secondsAhead(3900);
    EXPECT_TRUE(line(api).ends_with(" · cache expires in 1h 5m"));
}

TEST(SessionDetail, everyLineStandsInItsPlace) {
    SessionStatus api = session("api", 72);
    api.contextTokens = 45210;
    api.contextWindow = 200000;
    api.contextSource = ContextSource::estimated;
    api.cwd = "/work tree/api";
    api.modelProvider = "acme";
    api.parentSessionId = "parent-1";
    api.capabilities = SessionCapabilities{.message = false, .reason = "no terminal"};
    api.sessionId = "0123456789";
    api.shortId = "0123";
    api.handoff = handoff("/repo/HANDOFF.md", secondsAgo(720));
    EXPECT_EQ(detailOf(api), "45,210 of 200,000 tokens\n"
                             "context estimate\n"
                             "/work tree/api\n"
                             "model provider: acme\n"
                             "parent session: parent-1\n"
                             "messaging: no terminal\n"
                             "0123456789\n"
                             "Handoff written 12m ago: /repo/HANDOFF.md");
}

TEST(SessionDetail, aSessionWithoutAnythingToTellIsEmpty) {
    EXPECT_EQ(detailOf(SessionStatus()), "");
    SessionStatus able = session("api", 72);
    able.capabilities = SessionCapabilities{.message = true, .reason = std::nullopt};
    EXPECT_EQ(detailOf(able), "");
}

TEST(SessionDetail, tokensNeedNoWindowButAWindowAloneIsNotTold) {
    SessionStatus api;
    api.contextTokens = 1;
    EXPECT_EQ(detailOf(api), "1 tokens");
    api.contextTokens.reset();
    api.contextWindow = 200000;
    EXPECT_EQ(detailOf(api), "");
}

TEST(SessionDetail, onlyUnusualContextSourcesAreTold) {
    const std::pair<ContextSource, const char*> notes[] = {
        {ContextSource::configured, "context window configured"},
        {ContextSource::estimated, "context estimate"},
        {ContextSource::unavailable, "context unavailable"},
        {ContextSource::reported, ""},
        {ContextSource::unknown, ""},
    };
    for (const auto& [source, note] : notes) {
        SessionStatus api;
        api.contextSource = source;
        EXPECT_EQ(detailOf(api), note);
    }
}

TEST(SessionDetail, theShortIdStandsInForAMissingLongOne) {
    SessionStatus api;
    api.shortId = "0123";
    EXPECT_EQ(detailOf(api), "0123");
    api.sessionId = "";
    EXPECT_EQ(detailOf(api), "") << "an empty one is present";
}

TEST(SessionDetail, presentButEmptyTextsKeepTheirLines) {
    SessionStatus api;
    api.cwd = "";
    api.modelProvider = "";
    EXPECT_EQ(detailOf(api), "\nmodel provider: ");
}

TEST(HandoffDetail, aDateIsToldAsItsAge) {
    EXPECT_EQ(Formatting::handoffDetail(handoff("/repo/HANDOFF.md", secondsAgo(720)), now),
              "Handoff written 12m ago: /repo/HANDOFF.md");
    EXPECT_EQ(Formatting::handoffDetail(handoff("/repo/HANDOFF.md"), now), "Handoff: /repo/HANDOFF.md");
    EXPECT_EQ(Formatting::handoffDetail(handoff(""), now), "Handoff: ");
}

TEST(HandoffLine, itTellsItsAgeAndWhetherTheFileIsGone) {
    const SessionStatus dated = sessionWithHandoff("api", handoff("/h", secondsAgo(720)));
    const SessionStatus undated = sessionWithHandoff("api", handoff("/h"));
    EXPECT_EQ(Formatting::handoffLine(dated, now, true), "Open handoff · api (12m ago)");
    EXPECT_EQ(Formatting::handoffLine(dated, now, false), "Open handoff · api (12m ago) (missing)");
    EXPECT_EQ(Formatting::handoffLine(undated, now, true), "Open handoff · api");
    EXPECT_EQ(Formatting::handoffLine(undated, now, false), "Open handoff · api (missing)");
    EXPECT_EQ(Formatting::handoffLine(session("api", 1), now, true), "Open handoff · api");
}
