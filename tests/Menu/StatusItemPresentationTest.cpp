#include "MenubarCore/Menu/StatusItemPresentation.h"

#include "Records.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::records;
using Tone = StatusItemPresentation::Tone;

namespace {

using Sessions = std::vector<SessionStatus>;
using Failures = std::vector<ProviderFailure>;

const DaemonState running = DaemonState::Running{3};
const DaemonState stale = DaemonState::Stale{90};
const std::string runningTitle = "Daemon running (last poll 3s ago)";
const std::string degradedSuffix = " · some context unavailable";
constexpr const char* alarmSymbol = "eye.trianglebadge.exclamationmark";

enum class Mode { normal, compact };

StatusItemPresentation make(const DaemonState& state, const Sessions& sessions, const Failures& failures = {},
                            Mode mode = Mode::normal) {
    return StatusItemPresentation::make(state, sessions, failures, mode == Mode::compact, TimeZone());
}

std::vector<DaemonState> statesWithoutFigures() {
    return {DaemonState::Stopped{now}, DaemonState::Unreadable{"x"}, DaemonState::Missing{}};
}

} // namespace

TEST(StatusItemPresentation, allWellIsAnOpenEyeAndThePercentage) {
    EXPECT_EQ(make(running, {session("api", 72)}), (StatusItemPresentation{"eye", "72%", Tone::ok, runningTitle}));
}

TEST(StatusItemPresentation, nothingUsedIsAFigureToo) {
    EXPECT_EQ(make(running, {session("api", 0)}), (StatusItemPresentation{"eye", "0%", Tone::ok, runningTitle}));
    EXPECT_EQ(make(running, {session("api", 0)}, {}, Mode::compact),
              (StatusItemPresentation{"eye", "", Tone::ok, runningTitle + " · worst session 0%"}));
}

TEST(StatusItemPresentation, compactModeMovesThePercentageIntoTheTooltip) {
    EXPECT_EQ(make(running, {session("api", 72)}, {}, Mode::compact),
              (StatusItemPresentation{"eye", "", Tone::ok, runningTitle + " · worst session 72%"}));
}

TEST(StatusItemPresentation, withoutSessionsARunningDaemonIsWell) {
    EXPECT_EQ(make(running, {}), (StatusItemPresentation{"eye", "--", Tone::ok, runningTitle}));
    EXPECT_EQ(make(running, {}, {}, Mode::compact), (StatusItemPresentation{"eye", "", Tone::ok, runningTitle}));
}

TEST(StatusItemPresentation, oneProviderFailureDegradesARunningDaemon) {
    EXPECT_EQ(make(running, {}, {{"acme", "gone"}}),
              (StatusItemPresentation{"eye.slash", "--", Tone::muted, runningTitle + degradedSuffix}));
}

TEST(StatusItemPresentation, theLevelOfTheWorstSessionColoursTheItem) {
    EXPECT_EQ(make(running, {session("a", 93, SessionLevel::critical)}),
              (StatusItemPresentation{alarmSymbol, "93%", Tone::critical, runningTitle}));
    EXPECT_EQ(make(running, {session("a", 75, SessionLevel::warn)}),
              (StatusItemPresentation{alarmSymbol, "75%", Tone::warn, runningTitle}));
    EXPECT_EQ(make(running, {session("a", 75, SessionLevel::unknown)}),
              (StatusItemPresentation{"eye.slash", "75%", Tone::muted, runningTitle + degradedSuffix}));
}

TEST(StatusItemPresentation, aHigherLevelAtALowerPercentageDoesNotColourTheItem) {
    EXPECT_EQ(make(running, {session("a", 50, SessionLevel::warn), session("b", 80)}),
              (StatusItemPresentation{"eye", "80%", Tone::ok, runningTitle}));
}

TEST(StatusItemPresentation, aSessionWithoutAPercentageDegradesTheItem) {
    EXPECT_EQ(make(running, {session("none", std::nullopt), session("b", 80)}),
              (StatusItemPresentation{"eye.slash", "80%", Tone::muted, runningTitle + degradedSuffix}));
    EXPECT_EQ(make(running, {session("none", std::nullopt)}),
              (StatusItemPresentation{"eye.slash", "--", Tone::muted, runningTitle + degradedSuffix}));
}

TEST(StatusItemPresentation, anotherSessionOfUnknownLevelDegradesTheItem) {
    EXPECT_EQ(make(running, {session("b", 80), session("a", 10, SessionLevel::unknown)}),
              (StatusItemPresentation{"eye.slash", "80%", Tone::muted, runningTitle + degradedSuffix}));
}

TEST(StatusItemPresentation, anAlarmShowsThroughMissingFigures) {
    EXPECT_EQ(make(running, {session("a", 93, SessionLevel::critical), session("none", std::nullopt)}),
              (StatusItemPresentation{alarmSymbol, "93%", Tone::critical, runningTitle + degradedSuffix}));
    EXPECT_EQ(make(running, {session("a", 75, SessionLevel::warn)}, {{"acme", "gone"}}),
              (StatusItemPresentation{alarmSymbol, "75%", Tone::warn, runningTitle + degradedSuffix}));
}

TEST(StatusItemPresentation, aStaleDaemonKeepsThePercentageAndLosesTheTone) {
    const std::string title = "Daemon not responding (last poll 1m ago)";
    EXPECT_EQ(make(stale, {session("a", 93, SessionLevel::critical)}),
              (StatusItemPresentation{"eye.slash", "93%", Tone::muted, title}));
    EXPECT_EQ(make(stale, {}), (StatusItemPresentation{"eye.slash", "--", Tone::muted, title}));
}

TEST(StatusItemPresentation, aStaleDaemonTellsOfMissingFiguresOnlyInCompactMode) {
    const Sessions sessions = {session("a", 93), session("none", std::nullopt)};
    const std::string title = "Daemon not responding (last poll 1m ago)";
    EXPECT_EQ(make(stale, sessions).tooltip, title);
    EXPECT_EQ(make(stale, sessions, {}, Mode::compact),
              (StatusItemPresentation{"eye.slash", "", Tone::muted, title + " · worst session 93%" + degradedSuffix}));
}

TEST(StatusItemPresentation, withoutADaemonThereAreNoFigures) {
    for (const DaemonState& state : statesWithoutFigures()) {
        EXPECT_EQ(make(state, {session("a", 93, SessionLevel::critical)}),
                  (StatusItemPresentation{"eye.slash", "--", Tone::muted, state.title(TimeZone())}));
        EXPECT_EQ(make(state, {session("a", 93)}, {}, Mode::compact),
                  (StatusItemPresentation{"eye.slash", "", Tone::muted, state.title(TimeZone())}));
    }
}

TEST(StatusItemPresentation, withoutADaemonCompactModeStillTellsOfMissingFigures) {
    for (const DaemonState& state : statesWithoutFigures()) {
        EXPECT_EQ(make(state, {session("none", std::nullopt)}).tooltip, state.title(TimeZone()));
        EXPECT_EQ(make(state, {session("none", std::nullopt)}, {}, Mode::compact).tooltip,
                  state.title(TimeZone()) + degradedSuffix);
        EXPECT_EQ(make(state, {}, {{"acme", "gone"}}, Mode::compact).tooltip, state.title(TimeZone()) + degradedSuffix);
    }
}

TEST(StatusItemPresentation, theTimeInTheTooltipFollowsTheZone) {
    EXPECT_EQ(StatusItemPresentation::make(DaemonState::Stopped{now}, {}, {}, false, kathmandu).tooltip,
              "Daemon stopped at 19:48");
}

TEST(StatusItemPresentation, theTonesHaveTheirNames) {
    EXPECT_EQ(rawText(Tone::ok), "ok");
    EXPECT_EQ(rawText(Tone::warn), "warn");
    EXPECT_EQ(rawText(Tone::critical), "critical");
    EXPECT_EQ(rawText(Tone::muted), "muted");
}

TEST(StatusItemPresentation, aScreenReaderNamesProductPercentageAndState) {
    const auto label = [](const char* title, const char* tooltip) {
        return StatusItemPresentation{.symbolName = "eye", .title = title, .tooltip = tooltip}.accessibilityLabel();
    };
    EXPECT_EQ(label("72%", "Daemon running"), "ostrel, 72%, Daemon running");
    EXPECT_EQ(label("--", "Daemon stopped"), "ostrel, Daemon stopped");
    EXPECT_EQ(label("", "Daemon running · worst session 72%"), "ostrel, Daemon running · worst session 72%");
    EXPECT_EQ(label("", ""), "ostrel");
}
