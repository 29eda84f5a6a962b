#include "MenubarCore/Text/TimeZone.h"

#include "MenubarCore/Text/Timestamp.h"

#include <chrono>

#include <gtest/gtest.h>

using namespace menubar;
using namespace std::chrono_literals;

namespace {

Date date(const char* timestamp) {
    return parseTimestamp(timestamp).value();
}

} // namespace

TEST(TimeZone, theDefaultOneIsUTC) {
    EXPECT_EQ(TimeZone().clockTime(date("2025-07-01T14:03:59.999Z")), (ClockTime{14, 3}));
}

TEST(TimeZone, aFixedOneReachesAcrossMidnight) {
    EXPECT_EQ(TimeZone(5h + 45min).clockTime(date("2025-01-15T18:15:00Z")), (ClockTime{0, 0}));
    EXPECT_EQ(TimeZone(-3h - 30min).clockTime(date("2025-01-15T03:29:59Z")), (ClockTime{23, 59}));
}

TEST(TimeZone, instantsBefore1970AreRoundedTowardsThePast) {
    EXPECT_EQ(TimeZone().clockTime(Date{} - 1us), (ClockTime{23, 59}));
    EXPECT_EQ(TimeZone().clockTime(Date{} - 1min), (ClockTime{23, 59}));
    EXPECT_EQ(TimeZone().clockTime(Date{} - 1min - 1us), (ClockTime{23, 58}));
}

TEST(TimeZone, theFirstAndTheLastYearHaveATimeOfDay) {
    EXPECT_EQ(TimeZone(-1min).clockTime(date("0001-01-01T00:00:00Z")), (ClockTime{23, 59}));
    EXPECT_EQ(TimeZone(1min).clockTime(date("9999-12-31T23:59:59Z")), (ClockTime{0, 0}));
}

TEST(TimeZone, anyFunctionMayTellTheTime) {
    const TimeZone stopped([](Date) { return ClockTime{.hour = 12, .minute = 1}; });
    EXPECT_EQ(stopped.clockTime(date("2025-07-01T14:03:59Z")), (ClockTime{12, 1}));
}
