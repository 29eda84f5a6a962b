#include "MenubarCore/Text/TimeZone.h"

#include "MenubarCore/Text/Timestamp.h"

#include <cstdio>
#include <ctime>
#include <optional>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unicode/ucal.h>
#include <unicode/uenum.h>

using namespace menubar;
using namespace std::chrono_literals;

namespace menubar {

void PrintTo(const ClockTime& time, std::ostream* out) {
    *out << time.hour << ':' << time.minute;
}

} // namespace menubar

namespace {

ClockTime clockIn(const char* zone, const char* timestamp) {
    const std::optional<TimeZone> timeZone = TimeZone::named(zone);
    const std::optional<Date> date = parseTimestamp(timestamp);
    EXPECT_TRUE(timeZone) << zone;
    EXPECT_TRUE(date) << timestamp;
    return timeZone && date ? timeZone->clockTime(*date) : ClockTime{-1, -1};
}

/// Every name that ICU counts as a canonical location, which leaves links and names of its own aside.
std::vector<std::string> canonicalZones() {
    UErrorCode error = U_ZERO_ERROR;
    UEnumeration* const ids =
        ucal_openTimeZoneIDEnumeration(UCAL_ZONE_TYPE_CANONICAL_LOCATION, nullptr, nullptr, &error);
    std::vector<std::string> result;
    while (const char* const id = uenum_next(ids, nullptr, &error)) {
        result.emplace_back(id);
    }
    uenum_close(ids);
    EXPECT_TRUE(U_SUCCESS(error));
    return result;
}

/// The C library's own reading of the zone database, for as long as this object lives.
class SystemZone {
public:
    explicit SystemZone(const std::string& name) {
        if (const char* const former = getenv("TZ")) {
            m_former = former;
        }
        setenv("TZ", name.c_str(), 1);
        tzset();
    }

    SystemZone(const SystemZone&) = delete;
    SystemZone& operator=(const SystemZone&) = delete;

    ~SystemZone() {
        m_former ? setenv("TZ", m_former->c_str(), 1) : unsetenv("TZ");
        tzset();
    }

    ClockTime clockTime(Date date) const {
        const std::time_t seconds = std::chrono::system_clock::to_time_t(floor<std::chrono::seconds>(date));
        std::tm time{};
        localtime_r(&seconds, &time);
        return {time.tm_hour, time.tm_min};
    }

private:
    std::optional<std::string> m_former;
};

} // namespace

TEST(TimeZone, theDefaultOneIsUTC) {
    const TimeZone zone;
    EXPECT_EQ(zone.name(), "UTC");
    EXPECT_EQ(zone.clockTime(*parseTimestamp("2025-07-01T14:03:59.999Z")), (ClockTime{14, 3}));
}

TEST(TimeZone, aZoneKeepsTheNameItWasMadeWith) {
    for (const char* const name : {"UTC", "Etc/UTC", "Asia/Katmandu", "Asia/Kathmandu", "US/Pacific", "EST5EDT", "GMT",
                                   "GMT+0", "Etc/GMT+3", "America/Argentina/ComodRivadavia", "Zulu"}) {
        const std::optional<TimeZone> zone = TimeZone::named(name);
        ASSERT_TRUE(zone) << name;
        EXPECT_EQ(zone->name(), name);
    }
}

TEST(TimeZone, aNameThatTheZoneDatabaseDoesNotHoldIsAbsent) {
    for (const char* const name : {"",
                                   " ",
                                   "nonsense",
                                   "Etc/Unknown",
                                   "gmt+3",
                                   "GMT+3",
                                   "GMT+03:00",
                                   "UTC+1",
                                   "utc",
                                   "europe/berlin",
                                   "Europe",
                                   "Europe/",
                                   "Europe/Berlin ",
                                   " Europe/Berlin",
                                   "Europe/Berlin/Mitte",
                                   "../UTC",
                                   "/etc/localtime",
                                   ":UTC",
                                   "PST",
                                   "JST",
                                   "BST",
                                   "SystemV/PST8PDT",
                                   "Europe/B\u00E9rlin",
                                   "CET-1CEST"}) {
        EXPECT_FALSE(TimeZone::named(name)) << name;
    }
    EXPECT_FALSE(TimeZone::named(std::string_view("UTC\0", 4)));
    EXPECT_FALSE(TimeZone::named("Europe/" + std::string(10000, 'x')));
}

TEST(TimeZone, theAbbreviationsOfTheZoneDatabaseAreZones) {
    EXPECT_EQ(clockIn("EST", "2025-07-01T12:00:00Z"), (ClockTime{7, 0}));
    EXPECT_EQ(clockIn("HST", "2025-07-01T12:00:00Z"), (ClockTime{2, 0}));
    EXPECT_EQ(clockIn("PST8PDT", "2025-07-01T12:00:00Z"), (ClockTime{5, 0}));
    EXPECT_EQ(clockIn("Etc/GMT+3", "2025-07-01T12:00:00Z"), (ClockTime{9, 0})) << "west of Greenwich";
}

TEST(TimeZone, offsetsOfAQuarterAndHalfAnHourAreKept) {
    EXPECT_EQ(clockIn("Asia/Kathmandu", "2025-01-15T12:00:00Z"), (ClockTime{17, 45}));
    EXPECT_EQ(clockIn("Australia/Eucla", "2025-01-15T12:00:00Z"), (ClockTime{20, 45}));
    EXPECT_EQ(clockIn("Pacific/Chatham", "2025-01-15T12:00:00Z"), (ClockTime{1, 45}));
    EXPECT_EQ(clockIn("Pacific/Chatham", "2025-07-15T12:00:00Z"), (ClockTime{0, 45}));
    EXPECT_EQ(clockIn("Asia/Kolkata", "2025-01-15T12:00:00Z"), (ClockTime{17, 30}));
    EXPECT_EQ(clockIn("America/St_Johns", "2025-01-15T12:00:00Z"), (ClockTime{8, 30}));
    EXPECT_EQ(clockIn("Pacific/Marquesas", "2025-01-15T12:00:00Z"), (ClockTime{2, 30}));
}

TEST(TimeZone, theLargestOffsetsReachAcrossTheDateLine) {
    EXPECT_EQ(clockIn("Pacific/Kiritimati", "2025-01-15T11:00:00Z"), (ClockTime{1, 0}));
    EXPECT_EQ(clockIn("Pacific/Pago_Pago", "2025-01-15T10:59:00Z"), (ClockTime{23, 59}));
}

TEST(TimeZone, bothSidesOfADaylightSavingChangeAreTold) {
    EXPECT_EQ(clockIn("Europe/Berlin", "2025-03-30T00:59:59.999999Z"), (ClockTime{1, 59}));
    EXPECT_EQ(clockIn("Europe/Berlin", "2025-03-30T01:00:00Z"), (ClockTime{3, 0}));
    EXPECT_EQ(clockIn("Europe/Berlin", "2025-10-26T00:59:59.999999Z"), (ClockTime{2, 59}));
    EXPECT_EQ(clockIn("Europe/Berlin", "2025-10-26T01:00:00Z"), (ClockTime{2, 0}));
    EXPECT_EQ(clockIn("America/New_York", "2025-03-09T06:59:59Z"), (ClockTime{1, 59}));
    EXPECT_EQ(clockIn("America/New_York", "2025-03-09T07:00:00Z"), (ClockTime{3, 0}));
    EXPECT_EQ(clockIn("America/New_York", "2025-11-02T05:59:59Z"), (ClockTime{1, 59}));
    EXPECT_EQ(clockIn("America/New_York", "2025-11-02T06:00:00Z"), (ClockTime{1, 0}));
}

TEST(TimeZone, daylightSavingOfHalfAnHourIsTold) {
    EXPECT_EQ(clockIn("Australia/Lord_Howe", "2025-04-05T14:59:59Z"), (ClockTime{1, 59}));
    EXPECT_EQ(clockIn("Australia/Lord_Howe", "2025-04-05T15:00:00Z"), (ClockTime{1, 30}));
    EXPECT_EQ(clockIn("Australia/Lord_Howe", "2025-10-04T15:29:59Z"), (ClockTime{1, 59}));
    EXPECT_EQ(clockIn("Australia/Lord_Howe", "2025-10-04T15:30:00Z"), (ClockTime{2, 30}));
}

TEST(TimeZone, aZoneThatChangedItsOffsetKeepsItsHistory) {
    EXPECT_EQ(clockIn("Pacific/Apia", "2011-12-30T09:59:00Z"), (ClockTime{23, 59})) << "the day before the lost day";
    EXPECT_EQ(clockIn("Pacific/Apia", "2011-12-30T10:00:00Z"), (ClockTime{0, 0}));
    EXPECT_EQ(clockIn("Asia/Kathmandu", "1985-12-31T18:29:00Z"), (ClockTime{23, 59}));
    EXPECT_EQ(clockIn("Asia/Kathmandu", "1985-12-31T18:30:00Z"), (ClockTime{0, 15}));
    EXPECT_EQ(clockIn("Europe/Berlin", "1945-07-01T12:00:00Z"), (ClockTime{15, 0})) << "double summer time";
}

TEST(TimeZone, instantsBefore1970AreRoundedTowardsThePast) {
    const TimeZone utc;
    EXPECT_EQ(utc.clockTime(Date{} - 1us), (ClockTime{23, 59}));
    EXPECT_EQ(utc.clockTime(Date{} - 1min), (ClockTime{23, 59}));
    EXPECT_EQ(utc.clockTime(Date{} - 1min - 1us), (ClockTime{23, 58}));
    EXPECT_EQ(clockIn("Europe/Paris", "1969-12-31T22:59:59.999999Z"), (ClockTime{23, 59}));
    EXPECT_EQ(clockIn("Europe/Paris", "1969-12-31T23:00:00Z"), (ClockTime{0, 0}));
}

TEST(TimeZone, localMeanTimeOfLongAgoIsCutToTheMinute) {
    EXPECT_EQ(clockIn("Asia/Tokyo", "1800-01-01T00:00:00Z"), (ClockTime{9, 18})) << "9:18:59 ahead";
    EXPECT_EQ(clockIn("America/New_York", "1800-01-01T12:00:00Z"), (ClockTime{7, 3})) << "4:56:02 behind";
}

TEST(TimeZone, theFirstAndTheLastYearHaveATimeOfDay) {
    EXPECT_EQ(clockIn("UTC", "0001-01-01T00:00:00Z"), (ClockTime{0, 0}));
    EXPECT_EQ(clockIn("Asia/Tokyo", "0001-01-01T00:00:00Z"), (ClockTime{9, 18}));
    EXPECT_EQ(clockIn("America/New_York", "0001-01-01T00:00:00+23:59"), (ClockTime{19, 4})) << "in the year before";
    EXPECT_EQ(clockIn("UTC", "9999-12-31T23:59:59Z"), (ClockTime{23, 59}));
    EXPECT_EQ(clockIn("Asia/Tokyo", "9999-12-31T23:59:59-23:59"), (ClockTime{8, 58})) << "in the year after";
    EXPECT_EQ(clockIn("Europe/Berlin", "9999-07-01T12:00:00Z"), (ClockTime{14, 0})) << "the last rule goes on";
}

TEST(TimeZone, everyCanonicalZoneCanBeMade) {
    const std::vector<std::string> zones = canonicalZones();
    EXPECT_GT(zones.size(), 400U);
    for (const std::string& zone : zones) {
        EXPECT_TRUE(TimeZone::named(zone)) << zone;
    }
}

/// Two readings of the zone database, ICU's and the C library's, may be of different releases. What every release of
/// the last years agrees on is 2014 to 2020, but for the one station in Antarctica that was corrected since.
TEST(TimeZone, everyCanonicalZoneAgreesWithTheCLibraryOnEveryMonthOfSevenYears) {
    int compared = 0;
    for (const std::string& zone : canonicalZones()) {
        const std::optional<TimeZone> timeZone = TimeZone::named(zone);
        ASSERT_TRUE(timeZone) << zone;
        if (zone == "Antarctica/Vostok") {
            continue;
        }
        const SystemZone system(zone);
        for (Date date = *parseTimestamp("2014-01-01T00:30:00Z"); date < *parseTimestamp("2021-01-01T00:00:00Z");
             date += std::chrono::days(15)) {
            ASSERT_EQ(timeZone->clockTime(date), system.clockTime(date)) << zone << " " << date.time_since_epoch() / 1s;
            ++compared;
        }
    }
    EXPECT_GT(compared, 400 * 12 * 7);
}

TEST(TimeZone, aCopyOutlivesWhatItWasCopiedFrom) {
    std::optional<TimeZone> original = TimeZone::named("Asia/Tokyo");
    ASSERT_TRUE(original);
    const TimeZone copy = *original;
    original.reset();
    EXPECT_EQ(copy.clockTime(Date{}), (ClockTime{9, 0}));
    EXPECT_EQ(copy.name(), "Asia/Tokyo");
}

TEST(TimeZone, threadsMayShareOneZone) {
    const std::optional<TimeZone> zone = TimeZone::named("Europe/Berlin");
    ASSERT_TRUE(zone);
    std::vector<int> wrong(4);
    std::vector<std::thread> threads;
    for (int& count : wrong) {
        threads.emplace_back([&zone, &count] {
            for (int day = 0; day < 365; ++day) {
                const Date noon = *parseTimestamp("2025-01-01T12:00:00Z") + std::chrono::days(day);
                const int expected =
                    noon >= *parseTimestamp("2025-03-30T01:00:00Z") && noon < *parseTimestamp("2025-10-26T01:00:00Z")
                        ? 14
                        : 13;
                count += zone->clockTime(noon) == ClockTime{expected, 0} ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, (std::vector<int>{0, 0, 0, 0}));
}
