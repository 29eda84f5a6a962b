#include "MenubarCtl/SessionsOutput.h"

#include "MenubarCore/Text/DisplayColumns.h"
#include "MenubarCtl/JSONOutput.h"

#include "tests/MenubarCtl/Scene.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::ctl;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

const Scene& scene() {
    static const Scene made(running(R"(
        {"dirName":"api","level":"ok","contextPct":42,"lifecycle":"idle"},
        {"dirName":"website","level":"critical","contextPct":93,"lifecycle":"needsInput",
         "cacheExpiresAt":"2025-03-04T10:20:33Z"},
        {"dirName":"db","level":"warn","contextPct":75,"lifecycle":"running","cacheExpiresAt":"2025-03-04T10:14:33Z"},
        {"dirName":"\u65e5\u672c","level":"unknown"})"));
    return made;
}

std::vector<std::string> lines(const TextStyle& style) {
    return sessionLines(scene().menu.sessions, scene().now, style);
}

} // namespace

TEST(SessionLines, showNumberSignNameContextLifecycleAndCacheInMenuOrder) {
    EXPECT_THAT(lines({.cuts = false}), ElementsAre("1  ▲ website   93%  needs input  cache expires in 5m",
                                                    "2  ▲ db        75%  running      cache expired 1m ago",
                                                    "3  ◉ api       42%  idle", "4  ⊘ 日本       --  unknown"));
}

TEST(SessionLines, fitATerminalAndTheNameGivesWayFirst) {
    const Scene long_(running(R"({"dirName":"a-very-long-name-of-a-folder","level":"ok","contextPct":5,
                                  "lifecycle":"idle"})"));
    EXPECT_THAT(sessionLines(long_.menu.sessions, long_.now, {.columns = 30}),
                ElementsAre("1  ◉ a-very-long-…    5%  idle"));
    for (std::size_t columns = 1; columns < 70; ++columns) {
        for (const std::string& line : lines({.columns = columns})) {
            EXPECT_LE(displayColumns(line), columns) << line;
        }
    }
}

TEST(SessionLines, areWholeForAReaderThatIsNoTerminal) {
    const std::string name(400, 'x');
    const Scene wide(running(R"({"level":"ok","dirName":")" + name + "\"}"));
    EXPECT_THAT(sessionLines(wide.menu.sessions, wide.now, {.columns = 20, .cuts = false}),
                ElementsAre("1  ◉ " + name + "    --  unknown"));
}

TEST(SessionLines, areColouredByLevelAndBoldWhereOneWaits) {
    const auto shown = lines({.columns = 80, .styling = Styling::colours});
    EXPECT_THAT(shown[0], HasSubstr("\x1b[31m▲\x1b[0m\x1b[1m website"));
    EXPECT_THAT(shown[1], HasSubstr("\x1b[33m▲\x1b[0m db"));
    EXPECT_THAT(shown[2], HasSubstr("\x1b[32m◉\x1b[0m api"));
    EXPECT_THAT(lines({.columns = 80, .styling = Styling::weights})[1], Not(HasSubstr("\x1b[33m")));
}

TEST(SessionLines, holdNothingThatATerminalObeys) {
    const Scene hostile(running(R"({"dirName":"\u001b[2J\nx\u202e","level":"ok"})"));
    for (const bool cuts : {true, false}) {
        EXPECT_THAT(sessionLines(hostile.menu.sessions, hostile.now, {.cuts = cuts}),
                    ElementsAre("1  ◉ \uFFFD[2J\uFFFDx\uFFFD    --  unknown"));
    }
}

TEST(SessionsDocument, holdsEveryKeyOfASessionAndTheState) {
    const Scene one(running(R"({"sessionId":"id-1","shortId":"s1","dirName":"api","cwd":"/src/api","provider":"acme",
        "model":"m-1","contextTokens":1000,"contextWindow":200000,"contextPct":0.5,"level":"warn",
        "lifecycle":"needsInput","cacheExpiresAt":"2025-03-04T11:20:33.25+01:00","workspaceId":"w1","surfaceId":"p1",
        "handoff":{"path":"/h.md"}})"));
    const std::string expected =
        R"json({"sessions":[{"cacheExpiresAt":"2025-03-04T10:20:33.250000Z","contextPct":0.5,"contextTokens":1000,)json"
        R"json("contextWindow":200000,"cwd":"\/src\/api","handoff":"\/h.md","level":"warn","lifecycle":"needsInput",)json"
        R"json("line":"[warn] api · acme · m-1 · 1% · needs input · cache expires in 5m · handoff","model":"m-1",)json"
        R"json("name":"api","provider":"acme","sessionId":"id-1","shortId":"s1","surfaceId":"p1","tag":1,)json"
        R"json("waiting":true,"workspaceId":"w1"}],"state":{"detail":"No config in status file","kind":"running",)json"
        R"json("pollAge":3,"title":"Daemon running (last poll 3s ago)"}})json";
    EXPECT_EQ(documentText(sessionsDocument(one.poll, one.menu, TimeZone())).value(), expected + "\n");
}

TEST(SessionsDocument, whatIsAbsentIsNull) {
    const Scene one(running("{}"));
    EXPECT_THAT(documentText(sessionsDocument(one.poll, one.menu, TimeZone())).value(),
                HasSubstr(R"({"cacheExpiresAt":null,"contextPct":null,"contextTokens":null,"contextWindow":null,)"
                          R"("cwd":null,"handoff":null,"level":"unknown","lifecycle":"unknown",)"
                          R"("line":"[unknown] session · unknown · -- · unknown","model":null,"name":"session",)"
                          R"("provider":null,"sessionId":null,"shortId":null,"surfaceId":null,"tag":1,)"
                          R"("waiting":false,"workspaceId":null})"));
}

TEST(SessionsDocument, withoutAFileHasNoSessions) {
    const Scene broken("{");
    EXPECT_THAT(documentText(sessionsDocument(broken.poll, broken.menu, TimeZone())).value(),
                testing::StartsWith(R"({"sessions":[],"state":{"detail":")"));
}

TEST(TimestampText, isUTCWithAFractionWhereThereIsOne) {
    EXPECT_EQ(timestampText(parseTimestamp("2025-03-04T10:15:33Z").value()), "2025-03-04T10:15:33Z");
    EXPECT_EQ(timestampText(parseTimestamp("2025-01-01T00:15:33.000001+01:00").value()), "2024-12-31T23:15:33.000001Z");
    EXPECT_EQ(timestampText(parseTimestamp("0001-01-01T00:00:00Z").value()), "0001-01-01T00:00:00Z");
}
