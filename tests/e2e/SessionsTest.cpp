#include "MenubarCore/JSON/JSONValue.h"

#include "tests/e2e/ReadMark.h"
#include "tests/e2e/ScratchHome.h"

#include <algorithm>
#include <csignal>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using menubar::JSONValue;
using menubar::e2e::ChildProcess;
using menubar::e2e::ReadMark;
using menubar::e2e::ScratchHome;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr const char* two = R"({"at":"2025-03-04T10:15:30Z","sessions":[
    {"sessionId":"id-1","dirName":"api","level":"ok","contextPct":5,"lifecycle":"running"},
    {"sessionId":"id-2","dirName":"web","level":"warn","contextPct":90,"lifecycle":"needsInput"}]})";

ChildProcess watch(const ScratchHome& home, std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), ScratchHome::fixedTime.begin(), ScratchHome::fixedTime.end());
    return ChildProcess(home.menubarctl(std::move(arguments)));
}

auto hasLines(std::ptrdiff_t count) {
    return [count](const std::string& output) { return std::ranges::count(output, '\n') >= count; };
}

} // namespace

TEST(Sessions, areOneLineEach) {
    const ScratchHome home;
    home.writeStatus(two);
    const auto result = home.atFixedTime({"sessions"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "1  ▲ web   90%  needs input\n2  ◉ api    5%  running\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(home.atFixedTime({"sessions", "--json"}).output, StartsWith(R"({"sessions":[{"cacheExpiresAt":)"));
}

TEST(Sessions, thatAreOldOrNoneAreSaidToBe) {
    const ScratchHome home;
    EXPECT_EQ(home.atFixedTime({"sessions"}).errors, "ostrel-menubarctl: Daemon not running\n");
    home.writeStatus(R"({"at":"2025-03-04T10:15:30Z"})");
    const auto none = home.atFixedTime({"sessions"});
    EXPECT_EQ(none.status, 0);
    EXPECT_EQ(none.output, "");
    EXPECT_EQ(none.errors, "ostrel-menubarctl: no sessions\n");
    home.writeStatus(R"({"at":"2025-03-04T09:15:30Z","sessions":[{"dirName":"api"}]})");
    const auto old = home.atFixedTime({"sessions"});
    EXPECT_THAT(old.output, HasSubstr("api"));
    EXPECT_THAT(old.errors, StartsWith("ostrel-menubarctl: Daemon not responding"));
}

TEST(Sessions, areWatchedAsTheWholeAgainWhenItHasChanged) {
    const ScratchHome home;
    home.writeStatus(two);
    ChildProcess child = watch(home, {"sessions", "--watch"});
    ASSERT_TRUE(child.readUntil(hasLines(2)));
    home.writeStatus(R"({"at":"2025-03-04T10:15:31Z","sessions":[{"dirName":"api","level":"ok","contextPct":6}]})");
    ASSERT_TRUE(child.readUntil(hasLines(4)));
    EXPECT_EQ(child.output(), "1  ▲ web   90%  needs input\n2  ◉ api    5%  running\n\n1  ◉ api    6%  unknown\n");
    child.send(SIGINT);
    EXPECT_EQ(child.wait(), 0);
    EXPECT_EQ(child.errors(), "");
}

TEST(Sessions, aPollAloneIsNoChange) {
    const ScratchHome home;
    home.writeStatus(two);
    ChildProcess child = watch(home, {"sessions", "--json", "--watch"});
    ASSERT_TRUE(child.readUntil(hasLines(1)));
    std::string polled = two;
    polled.replace(polled.find("10:15:30"), 8, "10:15:32"); // the daemon has looked again, and found the same
    home.writeStatus(polled);
    const ReadMark mark(home.statusFile());
    if (!mark.isKept()) {
        GTEST_SKIP() << ReadMark::whyNot;
    }
    ASSERT_TRUE(mark.waitForReads(2)); // what the first look found is written by then
    home.writeStatus(R"({"stoppedAt":"2025-03-04T10:15:33Z"})");
    ASSERT_TRUE(child.readUntil(hasLines(2)));
    const std::string last = child.output().substr(child.output().find('\n') + 1);
    const auto document = JSONValue::decode(last);
    ASSERT_TRUE(document) << last;
    EXPECT_EQ(document->objectValue()->at("state").objectValue()->at("kind"), JSONValue("stopped"));
}

TEST(Status, checkedTellsByItsExitStatusWhetherAllIsWell) {
    const ScratchHome home;
    EXPECT_EQ(home.atFixedTime({"status", "--check"}).status, 1);
    home.writeStatus(two);
    const auto well = home.atFixedTime({"status", "--check"});
    EXPECT_EQ(well.status, 0);
    EXPECT_EQ(well.output, home.atFixedTime({"status"}).output);
    EXPECT_EQ(home.atFixedTime({"status", "--check", "--json"}).output, home.atFixedTime({"status", "--json"}).output);
    home.writeStatus(R"({"at":"2025-03-04T10:15:30Z","configFile":{"changedSinceLoad":true}})");
    EXPECT_EQ(home.atFixedTime({"status", "--check"}).status, 1);
    EXPECT_EQ(home.atFixedTime({"status"}).status, 0);
}
