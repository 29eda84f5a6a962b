#include "MenubarCore/Menu/Formatting.h"

#include "Records.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::records;
using namespace std::chrono_literals;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
const double notANumber = std::nan("");
constexpr double twoToThe63 = 9223372036854775808.0;

} // namespace

TEST(Formatting, durationShowsSecondsUpTo59) {
    EXPECT_EQ(Formatting::duration(0), "0s");
    EXPECT_EQ(Formatting::duration(0.999), "0s");
    EXPECT_EQ(Formatting::duration(42), "42s");
    EXPECT_EQ(Formatting::duration(59.9), "59s");
}

TEST(Formatting, durationDropsSecondsOnceAMinuteIsReached) {
    EXPECT_EQ(Formatting::duration(60), "1m");
    EXPECT_EQ(Formatting::duration(119), "1m");
    EXPECT_EQ(Formatting::duration(120), "2m");
    EXPECT_EQ(Formatting::duration(3599), "59m");
    EXPECT_EQ(Formatting::duration(3599.999), "59m");
}

TEST(Formatting, durationShowsHoursAndTheMinutesThatAreLeft) {
    EXPECT_EQ(Formatting::duration(3600), "1h");
    EXPECT_EQ(Formatting::duration(3659), "1h");
    EXPECT_EQ(Formatting::duration(3660), "1h 1m");
    EXPECT_EQ(Formatting::duration(3900), "1h 5m");
    EXPECT_EQ(Formatting::duration(7199), "1h 59m");
    EXPECT_EQ(Formatting::duration(7259), "2h");
}

TEST(Formatting, durationNeverTurnsHoursIntoDays) {
    EXPECT_EQ(Formatting::duration(86400), "24h");
    EXPECT_EQ(Formatting::duration(178200), "49h 30m");
    EXPECT_EQ(Formatting::duration(1e15), "277777777777h 46m");
}

TEST(Formatting, durationBelowZeroHasExpired) {
    EXPECT_EQ(Formatting::duration(-0.5), "expired");
    EXPECT_EQ(Formatting::duration(-1e300), "expired");
    EXPECT_EQ(Formatting::duration(-infinity), "expired");
    EXPECT_EQ(Formatting::duration(-0.0), "0s") << "which is not below zero";
}

TEST(Formatting, durationBeyondWhatCanBeCountedIsAPlaceholder) {
    EXPECT_EQ(Formatting::duration(notANumber), "--");
    EXPECT_EQ(Formatting::duration(infinity), "--");
    EXPECT_EQ(Formatting::duration(1e300), "--");
    EXPECT_EQ(Formatting::duration(twoToThe63), "--");
    EXPECT_EQ(Formatting::duration(std::nextafter(twoToThe63, 0)), "2562047788015215h 13m");
}

TEST(Formatting, agoCountsFromTheDateToNow) {
    EXPECT_EQ(Formatting::ago(secondsAgo(0), now), "0s ago");
    EXPECT_EQ(Formatting::ago(secondsAgo(59.9), now), "59s ago");
    EXPECT_EQ(Formatting::ago(secondsAgo(720), now), "12m ago");
    EXPECT_EQ(Formatting::ago(date("0001-01-01T00:00:00Z"), date("9999-12-31T23:59:59Z")), "87649415h 59m ago");
}

TEST(Formatting, agoOfADateInTheFutureIsNow) {
    EXPECT_EQ(Formatting::ago(secondsAhead(1), now), "0s ago");
    EXPECT_EQ(Formatting::ago(secondsAhead(86400), now), "0s ago");
}

TEST(Formatting, clockHasTwoDigitsForHoursAndMinutes) {
    EXPECT_EQ(Formatting::clock(date("2025-03-04T09:05:59.999Z"), TimeZone()), "09:05");
    EXPECT_EQ(Formatting::clock(date("2025-03-04T00:00:00Z"), TimeZone()), "00:00");
    EXPECT_EQ(Formatting::clock(date("2025-03-04T23:59:00Z"), TimeZone()), "23:59");
}

TEST(Formatting, clockFollowsItsZone) {
    EXPECT_EQ(Formatting::clock(date("2025-03-04T12:00:00Z"), kathmandu), "17:45");
    EXPECT_EQ(Formatting::clock(date("2025-07-04T12:00:00Z"), TimeZone(std::chrono::hours(2))), "14:00");
    EXPECT_EQ(Formatting::clock(date("2025-03-04T12:00:00Z"), TimeZone(std::chrono::hours(-5))), "07:00");
}

TEST(Formatting, percentRoundsHalvesAwayFromZero) {
    EXPECT_EQ(Formatting::percent(0.0), "0%");
    EXPECT_EQ(Formatting::percent(0.4), "0%");
    EXPECT_EQ(Formatting::percent(0.5), "1%");
    EXPECT_EQ(Formatting::percent(1.5), "2%");
    EXPECT_EQ(Formatting::percent(2.5), "3%");
    EXPECT_EQ(Formatting::percent(72.4), "72%");
    EXPECT_EQ(Formatting::percent(72.5), "73%");
    EXPECT_EQ(Formatting::percent(99.5), "100%");
    EXPECT_EQ(Formatting::percent(0.49999999999999994), "0%") << "the double just below a half";
    EXPECT_EQ(Formatting::percent(120.0), "120%");
}

TEST(Formatting, percentBelowZeroKeepsItsSignUnlessItRoundsToZero) {
    EXPECT_EQ(Formatting::percent(-0.4), "0%");
    EXPECT_EQ(Formatting::percent(-0.0), "0%");
    EXPECT_EQ(Formatting::percent(-0.5), "-1%");
    EXPECT_EQ(Formatting::percent(-2.5), "-3%");
}

TEST(Formatting, percentWithoutAFiniteNumberIsAPlaceholder) {
    EXPECT_EQ(Formatting::percent(std::nullopt), "--");
    EXPECT_EQ(Formatting::percent(notANumber), "--");
    EXPECT_EQ(Formatting::percent(infinity), "--");
    EXPECT_EQ(Formatting::percent(-infinity), "--");
}

TEST(Formatting, percentBeyond64BitsIsStillANumber) {
    EXPECT_EQ(Formatting::percent(-twoToThe63), "-9223372036854775808%");
    EXPECT_EQ(Formatting::percent(twoToThe63), "9.223372036854776e+18%");
    EXPECT_EQ(Formatting::percent(1e300), "1e+300%");
    EXPECT_EQ(Formatting::percent(-1e19), "-1e+19%");
}

TEST(Formatting, tokensAreGroupedInThrees) {
    EXPECT_EQ(Formatting::tokens(0), "0");
    EXPECT_EQ(Formatting::tokens(999), "999");
    EXPECT_EQ(Formatting::tokens(1000), "1,000");
    EXPECT_EQ(Formatting::tokens(1234), "1,234");
    EXPECT_EQ(Formatting::tokens(100000), "100,000");
    EXPECT_EQ(Formatting::tokens(1234567), "1,234,567");
    EXPECT_EQ(Formatting::tokens(std::numeric_limits<std::int64_t>::max()), "9,223,372,036,854,775,807");
}

TEST(Formatting, tokensBelowZeroKeepTheirSignOutOfTheGroups) {
    EXPECT_EQ(Formatting::tokens(-1), "-1");
    EXPECT_EQ(Formatting::tokens(-999), "-999");
    EXPECT_EQ(Formatting::tokens(-1234), "-1,234");
    EXPECT_EQ(Formatting::tokens(-100000), "-100,000");
    EXPECT_EQ(Formatting::tokens(std::numeric_limits<std::int64_t>::min()), "-9,223,372,036,854,775,808");
}

TEST(Formatting, modelShortLosesTheVendorPrefixOnly) {
    EXPECT_EQ(Formatting::modelShort("claude-model-4"), "model-4");
    EXPECT_EQ(Formatting::modelShort("claude-"), "");
    EXPECT_EQ(Formatting::modelShort("claude"), "claude");
    EXPECT_EQ(Formatting::modelShort("Claude-model-4"), "Claude-model-4");
    EXPECT_EQ(Formatting::modelShort("my-claude-model"), "my-claude-model");
    EXPECT_EQ(Formatting::modelShort("claude-claude-x"), "claude-x");
    EXPECT_EQ(Formatting::modelShort(""), "unknown");
    EXPECT_EQ(Formatting::modelShort(std::nullopt), "unknown");
}

TEST(Formatting, compactTooltipNamesTheWorstSessionWhenThereIsAFigure) {
    EXPECT_EQ(Formatting::compactTooltip("Daemon running (last poll 3s ago)", "72%"),
              "Daemon running (last poll 3s ago) · worst session 72%");
    EXPECT_EQ(Formatting::compactTooltip("Daemon not running", "--"), "Daemon not running");
    EXPECT_EQ(Formatting::compactTooltip("Daemon not running", "---"), "Daemon not running · worst session ---");
}

TEST(Formatting, configSummaryWithoutAConfigSaysSo) {
    EXPECT_EQ(Formatting::configSummary(nullptr), "No config in status file");
}

TEST(Formatting, configSummaryListsThresholdsAndModes) {
    OstrelConfig config;
    config.warnContextPct = 70;
    config.criticalContextPct = 89.5;
    config.messageAgents = true;
    EXPECT_EQ(Formatting::configSummary(&config), "warn 70% · critical 90% · messaging on");
    config.messageAgents = false;
    config.dryRun = true;
    EXPECT_EQ(Formatting::configSummary(&config), "warn 70% · critical 90% · messaging off · dry-run");
}

TEST(Formatting, configSummaryOfAnEmptyConfigHasPlaceholdersAndMessagingOff) {
    OstrelConfig config;
    EXPECT_EQ(Formatting::configSummary(&config), "warn -- · critical -- · messaging off");
    config.dryRun = false;
    EXPECT_EQ(Formatting::configSummary(&config), "warn -- · critical -- · messaging off");
}
