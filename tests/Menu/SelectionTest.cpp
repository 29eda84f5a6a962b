#include "MenubarCore/Menu/Selection.h"

#include "Records.h"

#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::records;

namespace {

using Names = std::vector<std::string>;

Names sortedNames(const std::vector<SessionStatus>& sessions) {
    Names names;
    for (const SessionStatus& session : Selection::sorted(sessions)) {
        names.emplace_back(session.displayName());
    }
    return names;
}

Names titles(const std::vector<HandoffItem>& items) {
    Names result;
    for (const HandoffItem& item : items) {
        result.push_back(item.title);
    }
    return result;
}

Names texts(const std::vector<OstrelEvent>& events) {
    Names result;
    for (const OstrelEvent& event : events) {
        result.push_back(event.text.value());
    }
    return result;
}

const auto everythingExists = [](const std::string&) { return true; };

} // namespace

TEST(SelectionSorted, theHighestPercentageComesFirstWhateverTheLevel) {
    EXPECT_EQ(sortedNames({session("fifty", 50, SessionLevel::critical), session("eighty", 80),
                           session("little", 50.5, SessionLevel::warn)}),
              (Names{"eighty", "little", "fifty"}));
}

TEST(SelectionSorted, aSessionWithoutAPercentageComesAfterOneOfNothing) {
    EXPECT_EQ(sortedNames({session("none", std::nullopt, SessionLevel::critical), session("zero", 0)}),
              (Names{"zero", "none"}));
    EXPECT_EQ(sortedNames({session("negative", -1.25), session("none", std::nullopt)}), (Names{"none", "negative"}));
    EXPECT_EQ(sortedNames({session("none", std::nullopt), session("negative", -0.75)}), (Names{"negative", "none"}));
}

TEST(SelectionSorted, ofEqualPercentagesTheHigherLevelComesFirst) {
    EXPECT_EQ(sortedNames({session("ok", 50, SessionLevel::ok), session("unknown", 50, SessionLevel::unknown),
                           session("warn", 50, SessionLevel::warn), session("critical", 50, SessionLevel::critical)}),
              (Names{"critical", "warn", "unknown", "ok"}));
}

TEST(SelectionSorted, ofEqualLevelsTheNamesDecideByScalarValues) {
    EXPECT_EQ(sortedNames({session("b", 1), session("\u00E9", 1), session("B", 1), session("a", 1),
                           session("\U00010000", 1), session("\uFFFD", 1), session("ab", 1), session("Z", 1)}),
              (Names{"B", "Z", "a", "ab", "b", "\u00E9", "\uFFFD", "\U00010000"}));
}

TEST(SelectionSorted, theNameThatDecidesIsTheOneThatIsShown) {
    SessionStatus byShortId = session("", 1);
    byShortId.shortId = "mm";
    SessionStatus nameless;
    nameless.contextPct = 1;
    nameless.level = SessionLevel::ok;
    EXPECT_EQ(sortedNames({nameless, session("z", 1), byShortId, session("a", 1)}), (Names{"a", "mm", "session", "z"}));
}

TEST(SelectionSorted, equalSessionsKeepTheirOrder) {
    std::vector<SessionStatus> sessions;
    for (int i = 0; i < 100; ++i) {
        sessions.push_back(session("api", 50));
        sessions.back().sessionId = std::to_string(i);
    }
    EXPECT_EQ(Selection::sorted(sessions), sessions);
}

TEST(SelectionSorted, numbersThatAreNoneCountAsMissing) {
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(sortedNames({session("nan", notANumber), session("b", 1), session("none", std::nullopt)}),
              (Names{"b", "nan", "none"}));
}

TEST(SelectionWorst, ofNoSessionsThereIsNone) {
    EXPECT_EQ(Selection::worst({}), nullptr);
    EXPECT_TRUE(Selection::sorted({}).empty());
}

TEST(SelectionWorst, itIsTheSessionWithTheHighestPercentageNotTheHighestLevel) {
    const std::vector<SessionStatus> sessions = {session("fifty", 50, SessionLevel::warn), session("eighty", 80)};
    EXPECT_EQ(Selection::worst(sessions), &sessions[1]);
}

TEST(SelectionWorst, ofEqualSessionsItIsTheFirst) {
    const std::vector<SessionStatus> sessions = {session("a", 80), session("a", 80)};
    EXPECT_EQ(Selection::worst(sessions), &sessions[0]);
}

TEST(SelectionWorst, itIsAlwaysTheHeadOfTheOrder) {
    std::mt19937 random(20250304);
    const auto upTo = [&random](unsigned most) { return random() % (most + 1); };
    for (int round = 0; round < 500; ++round) {
        std::vector<SessionStatus> sessions(1 + upTo(20));
        for (std::size_t i = 0; i < sessions.size(); ++i) {
            sessions[i] = session(std::string(upTo(2), 'a'), std::nullopt, static_cast<SessionLevel>(upTo(3)));
            sessions[i].sessionId = std::to_string(i);
            if (upTo(3) != 0) {
                sessions[i].contextPct = static_cast<double>(upTo(4)) - 1;
            }
        }
        ASSERT_EQ(*Selection::worst(sessions), Selection::sorted(sessions).front()) << round;
    }
}

TEST(SelectionHandoffItems, theNewestComesFirstAndUndatedOnesLast) {
    const std::vector<SessionStatus> sessions = {
        sessionWithHandoff("undated", handoff("/u")),
        sessionWithHandoff("old", handoff("/o", secondsAgo(3600))),
        session("without", 99),
        sessionWithHandoff("new", handoff("/n", secondsAgo(60))),
        sessionWithHandoff("ancient", handoff("/a", date("0001-01-01T00:00:00Z"))),
    };
    EXPECT_EQ(titles(Selection::handoffItems(sessions, now, everythingExists)),
              (Names{"Open handoff · new (1m ago)", "Open handoff · old (1h ago)",
                     "Open handoff · ancient (17743526h 3m ago)", "Open handoff · undated"}));
}

TEST(SelectionHandoffItems, datesLessThanASecondApartDiffer) {
    const std::vector<SessionStatus> sessions = {
        sessionWithHandoff("a", handoff("/earlier", date("2025-03-04T14:02:50.100001Z"))),
        sessionWithHandoff("b", handoff("/later", date("2025-03-04T14:02:50.100002Z"))),
    };
    EXPECT_EQ(Selection::handoffItems(sessions, now, everythingExists).front().path, "/later");
}

TEST(SelectionHandoffItems, ofEqualDatesTheNamesDecideAndThenTheOrder) {
    const std::vector<SessionStatus> sessions = {
        sessionWithHandoff("b", handoff("/b1", now)), sessionWithHandoff("a", handoff("/a1", now)),
        sessionWithHandoff("b", handoff("/b2", now)), sessionWithHandoff("d", handoff("/d")),
        sessionWithHandoff("c", handoff("/c")),
    };
    Names paths;
    for (const HandoffItem& item : Selection::handoffItems(sessions, now, everythingExists)) {
        paths.push_back(item.path);
    }
    EXPECT_EQ(paths, (Names{"/a1", "/b1", "/b2", "/c", "/d"}));
}

TEST(SelectionHandoffItems, aFileThatIsGoneIsListedButDisabled) {
    const std::vector<SessionStatus> sessions = {sessionWithHandoff("api", handoff("/here", now)),
                                                 sessionWithHandoff("web", handoff("/gone", secondsAgo(60)))};
    EXPECT_EQ(Selection::handoffItems(sessions, now, [](const std::string& path) { return path == "/here"; }),
              (std::vector<HandoffItem>{{"/here", "Open handoff · api (0s ago)", true},
                                        {"/gone", "Open handoff · web (1m ago) (missing)", false}}));
}

TEST(SelectionHandoffItems, eachFileIsAskedForOnce) {
    const std::vector<SessionStatus> sessions = {sessionWithHandoff("a", handoff("/a")),
                                                 sessionWithHandoff("b", handoff("/b")), session("c", 1)};
    std::map<std::string, int> asked;
    const auto items = Selection::handoffItems(sessions, now, [&asked](const std::string& path) {
        ++asked[path];
        return true;
    });
    EXPECT_EQ(items.size(), 2U);
    EXPECT_EQ(asked, (std::map<std::string, int>{{"/a", 1}, {"/b", 1}}));
}

TEST(SelectionRecentEvents, fewerThanTheLimitAreAllReturnedNewestFirst) {
    const std::vector<OstrelEvent> events = {event(secondsAgo(30), EventLevel::ok, "old"),
                                             event(secondsAgo(10), EventLevel::ok, "new"),
                                             event(secondsAgo(20), EventLevel::ok, "middle")};
    EXPECT_EQ(texts(Selection::recentEvents(events, 5)), (Names{"new", "middle", "old"}));
    EXPECT_EQ(texts(Selection::recentEvents(events, 3)), (Names{"new", "middle", "old"}));
    EXPECT_EQ(texts(Selection::recentEvents(events, 2)), (Names{"new", "middle"}));
    EXPECT_TRUE(Selection::recentEvents(events, 0).empty());
    EXPECT_TRUE(Selection::recentEvents({}, 5).empty());
}

TEST(SelectionRecentEvents, datesLessThanASecondApartDiffer) {
    const std::vector<OstrelEvent> events = {
        event(date("2025-03-04T14:02:50.100001Z"), EventLevel::ok, "earlier"),
        event(date("2025-03-04T14:02:50.100002Z"), EventLevel::ok, "later"),
    };
    EXPECT_EQ(texts(Selection::recentEvents(events, 5)), (Names{"later", "earlier"}));
}

TEST(SelectionRecentEvents, undatedOnesComeLastAndEqualOnesKeepTheirOrder) {
    const std::vector<OstrelEvent> events = {event(std::nullopt, EventLevel::ok, "undated 1"),
                                             event(now, EventLevel::ok, "same 1"),
                                             event(std::nullopt, EventLevel::ok, "undated 2"),
                                             event(date("0001-01-01T00:00:00Z"), EventLevel::ok, "ancient"),
                                             event(now, EventLevel::ok, "same 2"),
                                             event(now, EventLevel::ok, "same 3")};
    EXPECT_EQ(texts(Selection::recentEvents(events, 5)), (Names{"same 1", "same 2", "same 3", "ancient", "undated 1"}));
    EXPECT_EQ(texts(Selection::recentEvents(events, 2)), (Names{"same 1", "same 2"}));
}
