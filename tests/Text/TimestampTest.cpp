#include "MenubarCore/Text/Timestamp.h"

#include <string>

#include <gtest/gtest.h>

using namespace menubar;
using namespace std::chrono_literals;

namespace {

Date at(std::chrono::year_month_day day, std::chrono::microseconds time) {
    return std::chrono::sys_days(day) + time;
}

constexpr std::chrono::year_month_day fourthOfMarch = 2025y / 3 / 4;

} // namespace

TEST(Timestamp, thePlainFormIsReadToTheSecond) {
    EXPECT_EQ(parseTimestamp("2025-03-04T10:15:30Z"), at(fourthOfMarch, 10h + 15min + 30s));
    EXPECT_EQ(parseTimestamp("1970-01-01T00:00:00Z"), Date{});
    EXPECT_EQ(parseTimestamp("1969-12-31T23:59:59Z"), Date{} - 1s);
}

TEST(Timestamp, aFractionMayHaveOneDigitOrMany) {
    struct {
        const char* fraction;
        std::chrono::microseconds value;
    } const cases[] = {
        {".5", 500000us},
        {".12", 120000us},
        {".123", 123000us},
        {".1234", 123400us},
        {".12345", 123450us},
        {".123456", 123456us},
        {".1234567", 123456us},
        {".12345678", 123456us},
        {".123456789", 123456us},
        {".9999999999", 999999us},
        {".000001", 1us},
        {".0000009", 0us},
        {".0", 0us},
        {".50000000000000000", 500000us},
    };

    for (const auto& [fraction, value] : cases) {
        EXPECT_EQ(parseTimestamp("2025-03-04T10:15:30" + std::string(fraction) + "Z"),
                  at(fourthOfMarch, 10h + 15min + 30s + value))
            << fraction;
    }
}

TEST(Timestamp, theZoneWrittenInTheTextDecides) {
    EXPECT_EQ(parseTimestamp("2025-03-04T10:15:30+01:00"), at(fourthOfMarch, 9h + 15min + 30s));
    EXPECT_EQ(parseTimestamp("2025-03-04T10:15:30-01:30"), at(fourthOfMarch, 11h + 45min + 30s));
    EXPECT_EQ(parseTimestamp("2025-03-04T10:15:30.25+05:45"), at(fourthOfMarch, 4h + 30min + 30s + 250ms));
    EXPECT_EQ(parseTimestamp("2025-03-04T10:15:30+00:00"), at(fourthOfMarch, 10h + 15min + 30s));
    EXPECT_EQ(parseTimestamp("2025-03-04T10:15:30-00:00"), at(fourthOfMarch, 10h + 15min + 30s));
    EXPECT_EQ(parseTimestamp("2025-01-01T00:30:00+23:59"), at(2024y / 12 / 31, 31min));
    EXPECT_EQ(parseTimestamp("2024-12-31T23:30:00-23:59"), at(2025y / 1 / 1, 23h + 29min));
}

TEST(Timestamp, theYearsReachFrom1To9999) {
    EXPECT_EQ(parseTimestamp("0001-01-01T00:00:00Z"), at(1y / 1 / 1, 0s));
    EXPECT_EQ(parseTimestamp("9999-12-31T23:59:59.999999Z"), at(10000y / 1 / 1, -1us));
    EXPECT_EQ(parseTimestamp("0000-12-31T23:59:59Z"), std::nullopt);
    EXPECT_EQ(parseTimestamp("10000-01-01T00:00:00Z"), std::nullopt);
    EXPECT_EQ(parseTimestamp("+2025-01-01T00:00:00Z"), std::nullopt);
    EXPECT_EQ(parseTimestamp("-001-01-01T00:00:00Z"), std::nullopt);
}

TEST(Timestamp, anOffsetMayLeadBeyondTheYearsThatCanBeWritten) {
    EXPECT_EQ(parseTimestamp("0001-01-01T00:00:00+23:59"), at(1y / 1 / 1, -23h - 59min));
    EXPECT_EQ(parseTimestamp("9999-12-31T23:59:59-23:59"), at(10000y / 1 / 1, 23h + 59min - 1s));
}

TEST(Timestamp, theCalendarIsChecked) {
    for (const char* const day : {"2024-02-29", "2000-02-29", "2025-02-28", "2025-04-30", "2025-12-31"}) {
        EXPECT_TRUE(parseTimestamp(std::string(day) + "T00:00:00Z")) << day;
    }
    for (const char* const day : {"2025-02-29", "1900-02-29", "2024-02-30", "2025-04-31", "2025-01-32", "2025-13-01",
                                  "2025-00-01", "2025-01-00"}) {
        EXPECT_EQ(parseTimestamp(std::string(day) + "T00:00:00Z"), std::nullopt) << day;
    }
}

TEST(Timestamp, theClockIsChecked) {
    EXPECT_TRUE(parseTimestamp("2025-03-04T23:59:59Z"));
    for (const char* const time : {"24:00:00", "23:60:00", "23:59:60", "99:00:00"}) {
        EXPECT_EQ(parseTimestamp("2025-03-04T" + std::string(time) + "Z"), std::nullopt) << time;
    }
}

TEST(Timestamp, theOffsetIsChecked) {
    EXPECT_TRUE(parseTimestamp("2025-03-04T10:15:30+23:59"));
    for (const char* const zone : {"", "+24:00", "-24:00", "+23:60", "+0100", "+01", "+1:00", "+01:0", "01:00", "z",
                                   " Z", "ZZ", "Z+01:00", "+-1:00", "\u221201:00", "UTC", "GMT", "+", "-"}) {
        EXPECT_EQ(parseTimestamp("2025-03-04T10:15:30" + std::string(zone)), std::nullopt) << zone;
    }
}

TEST(Timestamp, everyOtherFormIsRefused) {
    for (const char* const text : {"",
                                   "Z",
                                   "2025",
                                   "2025-03-04",
                                   "2025-03-04T10:15Z",
                                   "2025-03-04 10:15:30",
                                   "2025-03-04 10:15:30Z",
                                   "2025-03-04t10:15:30Z",
                                   "2025-03-04T10:15:30,5Z",
                                   "2025-03-04T10:15:30.Z",
                                   "2025-03-04T10:15:30.+01:00",
                                   "20250304T101530Z",
                                   "2025-3-4T10:15:30Z",
                                   "25-03-04T10:15:30Z",
                                   "2025/03/04T10:15:30Z",
                                   "2025-03-04T10.15.30Z",
                                   " 2025-03-04T10:15:30Z",
                                   "2025-03-04T10:15:30Z ",
                                   "2025-03-04T10:15:30Z\n",
                                   "2025-03-04T1 :15:30Z",
                                   "2025-03-04T+1:15:30Z",
                                   "2025-03-04T10:15:3\u0660Z",
                                   "2025-W10-2T10:15:30Z",
                                   "2025-063T10:15:30Z",
                                   "2025-13-01"}) {
        EXPECT_EQ(parseTimestamp(text), std::nullopt) << text;
    }
    EXPECT_EQ(parseTimestamp(std::string_view("2025-03-04T10:15:30Z\0", 21)), std::nullopt);
}

TEST(Timestamp, noTextThatIsCutOffIsRead) {
    const std::string whole = "2025-03-04T10:15:30.5+01:00";
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(parseTimestamp(whole.substr(0, length)), std::nullopt) << length;
    }
    EXPECT_TRUE(parseTimestamp(whole));
}
