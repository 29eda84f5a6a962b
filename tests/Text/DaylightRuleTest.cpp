#include "MenubarCore/Text/DaylightRule.h"

#include "MenubarCore/Text/Timestamp.h"

#include <string>

#include <gtest/gtest.h>

using namespace menubar;
using namespace std::chrono_literals;

namespace {

std::chrono::seconds offsetAt(const char* rule, const char* timestamp) {
    const std::optional<DaylightRule> parsed = DaylightRule::parse(rule);
    EXPECT_TRUE(parsed) << rule;
    const Date date = parseTimestamp(timestamp).value();
    return parsed ? parsed->utcOffset(std::chrono::floor<std::chrono::seconds>(date.time_since_epoch())) : -999h;
}

} // namespace

TEST(DaylightRule, anOffsetIsWrittenWestwards) {
    EXPECT_EQ(offsetAt("EST5", "2025-07-01T00:00:00Z"), -5h);
    EXPECT_EQ(offsetAt("JST-9", "2025-07-01T00:00:00Z"), 9h);
    EXPECT_EQ(offsetAt("UTC0", "2025-07-01T00:00:00Z"), 0h);
    EXPECT_EQ(offsetAt("IST-5:30", "2025-07-01T00:00:00Z"), 5h + 30min);
    EXPECT_EQ(offsetAt("LMT+4:56:02", "2025-07-01T00:00:00Z"), -(4h + 56min + 2s));
    EXPECT_EQ(offsetAt("<+0545>-5:45", "2025-07-01T00:00:00Z"), 5h + 45min);
}

TEST(DaylightRule, savingBeginsAndEndsAtTwoByTheClockBeforeTheChange) {
    constexpr const char* newYork = "EST5EDT,M3.2.0,M11.1.0";
    EXPECT_EQ(offsetAt(newYork, "2040-03-11T06:59:59Z"), -5h);
    EXPECT_EQ(offsetAt(newYork, "2040-03-11T07:00:00Z"), -4h);
    EXPECT_EQ(offsetAt(newYork, "2040-11-04T05:59:59Z"), -4h);
    EXPECT_EQ(offsetAt(newYork, "2040-11-04T06:00:00Z"), -5h);
}

TEST(DaylightRule, theFifthWeekIsTheLast) {
    constexpr const char* berlin = "CET-1CEST,M3.5.0,M10.5.0/3";
    EXPECT_EQ(offsetAt(berlin, "2041-03-31T00:59:59Z"), 1h) << "the fifth Sunday";
    EXPECT_EQ(offsetAt(berlin, "2041-03-31T01:00:00Z"), 2h);
    EXPECT_EQ(offsetAt(berlin, "2040-03-25T00:59:59Z"), 1h) << "the fourth";
    EXPECT_EQ(offsetAt(berlin, "2040-03-25T01:00:00Z"), 2h);
    EXPECT_EQ(offsetAt(berlin, "9999-10-31T00:59:59Z"), 2h);
    EXPECT_EQ(offsetAt(berlin, "9999-10-31T01:00:00Z"), 1h);
}

TEST(DaylightRule, southOfTheEquatorTheYearBeginsInSummer) {
    constexpr const char* sydney = "AEST-10AEDT,M10.1.0,M4.1.0/3";
    EXPECT_EQ(offsetAt(sydney, "2040-01-01T00:00:00Z"), 11h);
    EXPECT_EQ(offsetAt(sydney, "2040-03-31T15:59:59Z"), 11h);
    EXPECT_EQ(offsetAt(sydney, "2040-03-31T16:00:00Z"), 10h);
    EXPECT_EQ(offsetAt(sydney, "2040-10-06T15:59:59Z"), 10h);
    EXPECT_EQ(offsetAt(sydney, "2040-10-06T16:00:00Z"), 11h);
    EXPECT_EQ(offsetAt(sydney, "2040-12-31T23:59:59Z"), 11h);
}

TEST(DaylightRule, savingMayBeHalfAnHourOrNegative) {
    constexpr const char* lordHowe = "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0";
    EXPECT_EQ(offsetAt(lordHowe, "2040-07-01T00:00:00Z"), 10h + 30min);
    EXPECT_EQ(offsetAt(lordHowe, "2040-01-01T00:00:00Z"), 11h);
    constexpr const char* dublin = "IST-1GMT0,M10.5.0,M3.5.0/1";
    EXPECT_EQ(offsetAt(dublin, "2040-07-01T00:00:00Z"), 1h);
    EXPECT_EQ(offsetAt(dublin, "2040-01-01T00:00:00Z"), 0h);
}

TEST(DaylightRule, theTimeOfAChangeMayLeaveItsDay) {
    constexpr const char* nuuk = "<-02>2<-01>,M3.5.0/-1,M10.5.0/0";
    EXPECT_EQ(offsetAt(nuuk, "2040-03-25T00:59:59Z"), -2h) << "Saturday at eleven in the evening there";
    EXPECT_EQ(offsetAt(nuuk, "2040-03-25T01:00:00Z"), -1h);
    constexpr const char* gaza = "EET-2EEST,M3.4.4/50,M10.4.4/50";
    EXPECT_EQ(offsetAt(gaza, "2040-03-23T23:59:59Z"), 2h) << "two days after the fourth Thursday";
    EXPECT_EQ(offsetAt(gaza, "2040-03-24T00:00:00Z"), 3h);
}

TEST(DaylightRule, daysMayBeCountedFromNewYearWithAndWithoutLeapDay) {
    constexpr const char* julian = "STD0DST,J60/0,J300/0";
    EXPECT_EQ(offsetAt(julian, "2041-03-01T00:00:00Z"), 1h);
    EXPECT_EQ(offsetAt(julian, "2041-02-28T23:59:59Z"), 0h);
    EXPECT_EQ(offsetAt(julian, "2040-03-01T00:00:00Z"), 1h) << "day 60 is 1 March in leap years too";
    EXPECT_EQ(offsetAt(julian, "2040-02-29T23:59:59Z"), 0h);
    constexpr const char* ordinal = "STD0DST,59/0,300/0";
    EXPECT_EQ(offsetAt(ordinal, "2041-03-01T00:00:00Z"), 1h);
    EXPECT_EQ(offsetAt(ordinal, "2040-02-29T00:00:00Z"), 1h) << "day 59 is 29 February in leap years";
    EXPECT_EQ(offsetAt(ordinal, "2040-02-28T23:59:59Z"), 0h);
}

TEST(DaylightRule, savingMayLastAllYear) {
    for (const char* const moment : {"2040-01-01T03:00:00Z", "2040-07-01T00:00:00Z", "2041-01-01T02:59:59Z"}) {
        EXPECT_EQ(offsetAt("XXX3EDT4,0/0,J365/23", moment), -4h) << moment;
    }
}

TEST(DaylightRule, whatIsNoRuleIsAbsent) {
    for (const char* const text : {"",
                                   "5",
                                   "EST",
                                   "ES5",
                                   "EST5EDT",
                                   "EST5EDT,",
                                   "EST5EDT,M3.2.0",
                                   "EST5EDT,M3.2.0,",
                                   "EST5EDT,M3.2.0,M11.1.0,",
                                   "EST5EDT,M3.2.0,M11.1.0 ",
                                   "EST5EDT,M0.2.0,M11.1.0",
                                   "EST5EDT,M13.2.0,M11.1.0",
                                   "EST5EDT,M3.0.0,M11.1.0",
                                   "EST5EDT,M3.6.0,M11.1.0",
                                   "EST5EDT,M3.2.7,M11.1.0",
                                   "EST5EDT,M3.2,M11.1.0",
                                   "EST5EDT,J0,J300",
                                   "EST5EDT,J366,J300",
                                   "EST5EDT,366,300",
                                   "EST5EDT,1/168,300",
                                   "EST5EDT,1/,300",
                                   "EST25",
                                   "EST5:60",
                                   "EST5:",
                                   "EST5:00:60",
                                   "<+0545-5:45",
                                   "<>-5",
                                   "EST 5",
                                   " EST5",
                                   "EST--5",
                                   "E\xC3\x89T5"}) {
        EXPECT_FALSE(DaylightRule::parse(text)) << text;
    }
}
