#include "MenubarCore/Menu/DaemonState.h"

#include "Records.h"

#include <limits>

#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::records;
using Case = DaemonState::Case;

namespace {

StatusFile polledWithInterval(double age, std::int64_t intervalMs) {
    StatusFile file = polled(age);
    file.intervalMs = intervalMs;
    return file;
}

Case stateAfter(const StatusFile& file) {
    return DaemonState::from(file, now).kind();
}

std::string title(const DaemonState& state) {
    return state.title(TimeZone());
}

} // namespace

TEST(DaemonState, aRecentPollIsRunningUpToTwoAndAHalfIntervals) {
    EXPECT_EQ(DaemonState::from(polled(3), now), DaemonState(DaemonState::Running{3}));
    EXPECT_EQ(DaemonState::from(polled(75), now), DaemonState(DaemonState::Running{75}));
    EXPECT_EQ(DaemonState::from(polled(75.001), now), DaemonState(DaemonState::Stale{75.001}));
}

TEST(DaemonState, theFilesOwnIntervalSetsTheLimit) {
    EXPECT_EQ(stateAfter(polledWithInterval(25, 10000)), Case::running);
    EXPECT_EQ(stateAfter(polledWithInterval(25.000001, 10000)), Case::stale);
    EXPECT_EQ(stateAfter(polledWithInterval(0.0025, 1)), Case::running);
    EXPECT_EQ(stateAfter(polledWithInterval(0.002501, 1)), Case::stale);
    EXPECT_EQ(stateAfter(polledWithInterval(1e9, std::numeric_limits<std::int64_t>::max())), Case::running);
}

TEST(DaemonState, anIntervalThatIsNotPositiveCountsAsHalfAMinute) {
    for (const std::int64_t interval : {std::int64_t{0}, std::int64_t{-5}, std::numeric_limits<std::int64_t>::min()}) {
        EXPECT_EQ(stateAfter(polledWithInterval(75, interval)), Case::running) << interval;
        EXPECT_EQ(stateAfter(polledWithInterval(75.001, interval)), Case::stale) << interval;
    }
}

TEST(DaemonState, aPollInTheFutureIsRunning) {
    const DaemonState state = DaemonState::from(polled(-10), now);
    EXPECT_EQ(state, DaemonState(DaemonState::Running{-10}));
    EXPECT_EQ(title(state), "Daemon running (last poll 0s ago)");
}

TEST(DaemonState, aRecordedStopWinsOverAFreshPoll) {
    StatusFile file = polled(1);
    file.stoppedAt = secondsAgo(3600);
    EXPECT_EQ(DaemonState::from(file, now), DaemonState(DaemonState::Stopped{secondsAgo(3600)}));
}

TEST(DaemonState, aFileWithoutAnyTimeIsStaleWithoutAnAge) {
    EXPECT_EQ(DaemonState::from(StatusFile(), now), DaemonState(DaemonState::Stale{}));
}

TEST(DaemonState, aSnapshotWithoutAFilePassesItsCaseOn) {
    EXPECT_EQ(DaemonState::from(StatusSnapshot::missing(), now), DaemonState(DaemonState::Missing{}));
    EXPECT_EQ(DaemonState::from(StatusSnapshot::unreadable("missing key message"), now),
              DaemonState(DaemonState::Unreadable{"missing key message"}));
    EXPECT_EQ(DaemonState::from(StatusSnapshot::loaded(polled(3)), now), DaemonState(DaemonState::Running{3}));
}

TEST(DaemonState, onlyARunningDaemonHasLiveData) {
    const DaemonState running = DaemonState::Running{3};
    EXPECT_TRUE(running.isRunning());
    EXPECT_TRUE(running.hasLiveData());
    for (const DaemonState& state : {DaemonState(DaemonState::Stale{90}), DaemonState(DaemonState::Stale{}),
                                     DaemonState(DaemonState::Stopped{now}), DaemonState(DaemonState::Unreadable{"x"}),
                                     DaemonState(DaemonState::Missing{})}) {
        EXPECT_FALSE(state.isRunning());
        EXPECT_FALSE(state.hasLiveData());
    }
}

TEST(DaemonState, thePollAgeIsKnownWhereThereWasAPoll) {
    EXPECT_EQ(DaemonState(DaemonState::Running{3}).pollAge(), 3);
    EXPECT_EQ(DaemonState(DaemonState::Stale{90}).pollAge(), 90);
    EXPECT_EQ(DaemonState(DaemonState::Stale{}).pollAge(), std::nullopt);
    EXPECT_EQ(DaemonState(DaemonState::Stopped{now}).pollAge(), std::nullopt);
    EXPECT_EQ(DaemonState(DaemonState::Unreadable{"x"}).pollAge(), std::nullopt);
    EXPECT_EQ(DaemonState().pollAge(), std::nullopt);
}

TEST(DaemonState, statesAreEqualWhenTheirCasesAndPayloadsAre) {
    EXPECT_EQ(DaemonState(), DaemonState(DaemonState::Missing{}));
    EXPECT_NE(DaemonState(DaemonState::Running{3}), DaemonState(DaemonState::Stale{3}));
    EXPECT_NE(DaemonState(DaemonState::Stale{3}), DaemonState(DaemonState::Stale{}));
    EXPECT_EQ(DaemonState(DaemonState::Stale{}), DaemonState(DaemonState::Stale{}));
    EXPECT_NE(DaemonState(DaemonState::Stale{3}), DaemonState(DaemonState::Stale{4}));
    EXPECT_NE(DaemonState(DaemonState::Unreadable{"a"}), DaemonState(DaemonState::Unreadable{"b"}));
}

TEST(DaemonState, everyStateHasItsTitle) {
    EXPECT_EQ(title(DaemonState::Running{3.9}), "Daemon running (last poll 3s ago)");
    EXPECT_EQ(title(DaemonState::Stale{3900}), "Daemon not responding (last poll 1h 5m ago)");
    EXPECT_EQ(title(DaemonState::Stale{-1}), "Daemon not responding (last poll 0s ago)");
    EXPECT_EQ(title(DaemonState::Stale{}), "Daemon not responding (no poll time in status file)");
    EXPECT_EQ(title(DaemonState::Stopped{now}), "Daemon stopped at 14:03");
    EXPECT_EQ(DaemonState(DaemonState::Stopped{now}).title(kathmandu), "Daemon stopped at 19:48");
    EXPECT_EQ(title(DaemonState::Unreadable{"missing key message"}), "Status file unreadable");
    EXPECT_EQ(title(DaemonState::Missing{}), "Daemon not running");
}

TEST(DaemonState, theDetailIsTheConfigurationWhereThereIsAFile) {
    OstrelConfig config;
    config.warnContextPct = 70;
    for (const DaemonState& state : {DaemonState(DaemonState::Running{3}), DaemonState(DaemonState::Stale{90}),
                                     DaemonState(DaemonState::Stopped{now})}) {
        EXPECT_EQ(state.detail(&config), "warn 70% · critical -- · messaging off");
        EXPECT_EQ(state.detail(nullptr), "No config in status file");
    }
}

TEST(DaemonState, theDetailWithoutAFileSaysWhyOrWhatToDo) {
    const OstrelConfig config;
    EXPECT_EQ(DaemonState(DaemonState::Unreadable{"missing key message"}).detail(&config), "missing key message");
    EXPECT_EQ(DaemonState(DaemonState::Missing{}).detail(nullptr), "Start it with: ostrel watch (or ostrel install)");
}
