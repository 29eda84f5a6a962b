#include "MenubarCtl/SessionMatch.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;
using menubar::ctl::findSession;
using menubar::ctl::firstWaiting;

namespace {

SessionStatus session(std::optional<std::string> sessionId, std::optional<std::string> shortId,
                      std::optional<std::string> dirName) {
    SessionStatus made;
    made.sessionId = std::move(sessionId);
    made.shortId = std::move(shortId);
    made.dirName = std::move(dirName);
    return made;
}

/// The position of the session that the name stands for, or the complaint.
std::string found(const std::vector<SessionStatus>& sessions, std::string_view name) {
    const auto match = findSession(sessions, name);
    return match ? std::to_string(*match - sessions.data()) : match.error();
}

} // namespace

TEST(SessionMatch, findsBySessionIdShortIdOrDisplayName) {
    const std::vector<SessionStatus> sessions{session("id-1", "s1", "api"), session("id-2", "s2", "web")};
    EXPECT_EQ(found(sessions, "id-2"), "1");
    EXPECT_EQ(found(sessions, "s2"), "1");
    EXPECT_EQ(found(sessions, "web"), "1");
    EXPECT_EQ(found(sessions, "api"), "0");
}

TEST(SessionMatch, aSessionIdHidesShortIdsAndThoseHideNames) {
    const std::vector<SessionStatus> sessions{session("id-1", "s1", "x"), session("id-2", "x", "web"),
                                              session("x", "s3", "app")};
    EXPECT_EQ(found(sessions, "x"), "2");
    EXPECT_EQ(found({sessions[0], sessions[1]}, "x"), "1");
    EXPECT_EQ(found({sessions[0]}, "x"), "0");
}

TEST(SessionMatch, severalOfOneRuleAreListed) {
    const std::vector<SessionStatus> sessions{session("id-1", "s1", "api"), session("id-2", "s2", "web"),
                                              session(std::nullopt, std::nullopt, "api")};
    EXPECT_EQ(found(sessions, "api"), "several sessions are called \"api\": api (id-1), api (no session id)");
    const std::vector<SessionStatus> twins{session("same", "s1", "api"), session("same", "s2", "web")};
    EXPECT_EQ(found(twins, "same"), "several sessions are called \"same\": api (same), web (same)");
}

TEST(SessionMatch, ofManyTheFirstTenAreListedAndTheRestIsCounted) {
    std::vector<SessionStatus> sessions;
    std::string listed = "several sessions are called \"api\": ";
    for (int i = 1; i <= 10; ++i) {
        sessions.push_back(session(std::to_string(i), std::nullopt, "api"));
        listed += (i == 1 ? "api (" : ", api (") + std::to_string(i) + ")";
    }
    EXPECT_EQ(found(sessions, "api"), listed);
    sessions.resize(10'000, session("x", std::nullopt, "api"));
    EXPECT_EQ(found(sessions, "api"), listed + " and 9990 more");
}

TEST(SessionMatch, aLongNameIsCut) {
    const std::string name(100'000, 'a');
    EXPECT_EQ(found({}, name), "no session is called \"" + std::string(199, 'a') + "…\"");
    const std::vector<SessionStatus> sessions{session("id-1", name, "api"), session("id-2", name, "web")};
    EXPECT_EQ(found(sessions, name),
              "several sessions are called \"" + std::string(199, 'a') + "…\": api (id-1), web (id-2)");
}

TEST(SessionMatch, theNumberThatIsShownComesAfterNamesAndBeforeBeginnings) {
    const std::vector<SessionStatus> sessions{session("1f", "s1", "api"), session("2f", "s2", "web"),
                                              session("3f", "s3", "2")};
    EXPECT_EQ(found(sessions, "1"), "0");
    EXPECT_EQ(found(sessions, "2"), "2");
    EXPECT_EQ(found(sessions, "3"), "2");
    EXPECT_EQ(found(sessions, "01"), "0");
    EXPECT_EQ(found({session("a", "s1", "api"), session("b", "s2", "web")}, "2"), "1");
    for (const char* name : {"0", "4", "-1", "99999999999999999999", "1 "}) {
        EXPECT_EQ(found(sessions, name), "no session is called \"" + std::string(name) + "\"");
    }
}

TEST(SessionMatch, theBeginningOfOneSessionsNameIsEnough) {
    const std::vector<SessionStatus> sessions{session("id-1", "s1", "api-server"), session("id-2", "s2", "app"),
                                              session("id-3", "apple", "apple pie")};
    EXPECT_EQ(found(sessions, "api"), "0");
    EXPECT_EQ(found(sessions, "app"), "1");
    EXPECT_EQ(found(sessions, "appl"), "2");
    EXPECT_EQ(found(sessions, "ap"),
              "several sessions begin with \"ap\": api-server (id-1), app (id-2), apple pie (id-3)");
    EXPECT_EQ(found(sessions, "id"),
              "several sessions begin with \"id\": api-server (id-1), app (id-2), apple pie (id-3)");
    for (const char* name : {"API", "api ", "", "session"}) {
        EXPECT_EQ(found(sessions, name), "no session is called \"" + std::string(name) + "\"");
    }
    EXPECT_EQ(found({}, "api"), "no session is called \"api\"");
}

TEST(SessionMatch, theFirstThatWaitsIsTheFirstInTheirOrder) {
    std::vector<SessionStatus> sessions{session("id-1", "s1", "api"), session("id-2", "s2", "web"),
                                        session("id-3", "s3", "app")};
    EXPECT_EQ(firstWaiting(sessions).error(), "no session needs input");
    sessions[1].lifecycle = SessionLifecycle::needsInput;
    sessions[2].lifecycle = SessionLifecycle::needsInput;
    EXPECT_EQ(*firstWaiting(sessions), &sessions[1]);
}

TEST(SessionMatch, theDisplayNameStandsInForAMissingOne) {
    const std::vector<SessionStatus> sessions{session("id-1", "s1", ""), session(std::nullopt, std::nullopt, {})};
    EXPECT_EQ(found(sessions, "s1"), "0");
    EXPECT_EQ(found(sessions, "session"), "1");
}
