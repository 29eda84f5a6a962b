#include "MenubarApp/Platform/SystemClock.h"

#include "MenubarApp/Platform/ZoneDatabase.h"
#include "MenubarCore/Text/Timestamp.h"

#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryDirectory.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using menubar::testing_support::ScopedVariable;
using menubar::testing_support::TemporaryDirectory;
using testing::ElementsAre;

namespace {

using Times = std::vector<std::string>;

/// What the clock shows at each instant.
Times shown(const std::vector<std::string>& instants) {
    const TimeZone zone = SystemClock().timeZone();
    Times times;
    for (const std::string& instant : instants) {
        const ClockTime time = zone.clockTime(parseTimestamp(instant).value());
        std::array<char, 16> text{};
        std::snprintf(text.data(), text.size(), "%02d:%02d", time.hour, time.minute);
        times.emplace_back(text.data());
    }
    return times;
}

/// The same in the zone that `TZ` is set to.
Times shownIn(const std::string& zone, const std::vector<std::string>& instants) {
    const ScopedVariable variable("TZ", zone);
    return shown(instants);
}

struct ClosePipe {
    void operator()(FILE* pipe) const { ::pclose(pipe); }
};

/// What the system's own program says of each instant, with the environment that it inherits.
Times toldByDate(const std::vector<std::string>& instants) {
    std::string command;
    for (const std::string& instant : instants) {
        const auto seconds = std::chrono::floor<std::chrono::seconds>(parseTimestamp(instant).value());
        const std::string number = std::to_string(seconds.time_since_epoch().count());
#if defined(__APPLE__)
        command += "date -r " + number + " +%H:%M;";
#else
        command += "date -d @" + number + " +%H:%M;";
#endif
    }
    const std::unique_ptr<FILE, ClosePipe> output(::popen(command.c_str(), "r"));
    Times times;
    for (std::array<char, 64> line{}; output && std::fgets(line.data(), line.size(), output.get()) != nullptr;) {
        times.push_back(std::string(line.data()).substr(0, 5));
    }
    return times;
}

/// Winter and summer on both halves of the globe, both sides of changes, and the ends of what a date can be.
const std::vector<std::string> anyTime{"2025-01-15T12:00:00Z", "2025-07-15T12:00:00Z", "2025-03-30T00:59:59Z",
                                       "2025-03-30T01:00:00Z", "2025-10-26T00:59:59Z", "2025-10-26T01:00:00Z",
                                       "2025-04-05T14:59:59Z", "2025-04-05T15:00:00Z", "1945-07-01T12:00:00Z",
                                       "1969-12-31T23:59:59Z", "2040-07-01T12:00:00Z", "0001-01-01T00:00:00Z",
                                       "9999-07-01T12:00:00Z", "9999-12-31T23:59:59Z"};

} // namespace

TEST(SystemClock, nowIsTheSystemsTime) {
    const auto before = std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
    const Date now = SystemClock().now();
    const auto after = std::chrono::system_clock::now();
    EXPECT_LE(before, now);
    EXPECT_LE(now, after);
}

TEST(SystemClock, agreesWithTheSystemsOwnProgramHoweverTheZoneIsSaid) {
    const TemporaryDirectory directory;
    const std::string berlin = ZoneDatabase::directory() + "/Europe/Berlin";
    const std::string copy = directory / "localtime";
    std::filesystem::copy_file(berlin, copy);
    const std::vector<std::optional<std::string>> settings{std::nullopt,
                                                           "",
                                                           "UTC",
                                                           "Europe/Berlin",
                                                           ":Europe/Berlin",
                                                           "Asia/Kolkata",
                                                           "Asia/Kathmandu",
                                                           "Australia/Lord_Howe",
                                                           "America/St_Johns",
                                                           "JST-9",
                                                           "CET-1CEST",
                                                           "CET-1CEST,M3.5.0,M10.5.0/3",
                                                           "<+0545>-5:45",
                                                           berlin,
                                                           ":" + berlin,
                                                           copy,
                                                           ":" + copy,
                                                           ":/etc/localtime",
                                                           directory / "nowhere",
                                                           "Nowhere/Land"};
    for (const auto& setting : settings) {
        const ScopedVariable variable("TZ", setting);
        const Times expected = toldByDate(anyTime);
        ASSERT_EQ(expected.size(), anyTime.size());
        EXPECT_EQ(shown(anyTime), expected) << setting.value_or("no TZ");
    }
}

TEST(SystemClock, bothSidesOfADaylightSavingChangeAreTold) {
    EXPECT_THAT(shownIn("Europe/Berlin", {"2025-03-30T00:59:59.999999Z", "2025-03-30T01:00:00Z",
                                          "2025-10-26T00:59:59.999999Z", "2025-10-26T01:00:00Z"}),
                ElementsAre("01:59", "03:00", "02:59", "02:00"));
    EXPECT_THAT(shownIn("EST5EDT,M3.2.0,M11.1.0", {"2040-03-11T06:59:59Z", "2040-03-11T07:00:00Z",
                                                   "2040-11-04T05:59:59Z", "2040-11-04T06:00:00Z"}),
                ElementsAre("01:59", "03:00", "01:59", "01:00"));
    EXPECT_THAT(shownIn("Australia/Lord_Howe", {"2025-04-05T14:59:59Z", "2025-04-05T15:00:00Z", "2025-10-04T15:29:59Z",
                                                "2025-10-04T15:30:00Z"}),
                ElementsAre("01:59", "01:30", "01:59", "02:30"))
        << "half an hour of it";
}

TEST(SystemClock, instantsBefore1970AreRoundedTowardsThePast) {
    EXPECT_THAT(shownIn("Asia/Kathmandu", {"1969-12-31T18:29:59.999999Z", "1969-12-31T18:30:00Z"}),
                ElementsAre("23:59", "00:00"))
        << "half past five ahead until 1985";
}

TEST(SystemClock, theFirstAndTheLastYearHaveATimeOfDay) {
    EXPECT_THAT(shownIn("JST-9", {"0001-01-01T00:00:00Z", "0001-01-01T00:00:00+23:59", "9999-12-31T23:59:59-23:59"}),
                ElementsAre("09:00", "09:01", "08:58"));
}

TEST(SystemClock, oneClockFollowsAChangeOfTheSetting) {
    const SystemClock clock;
    const ScopedVariable before("TZ", "Asia/Kathmandu");
    EXPECT_EQ(clock.timeZone().clockTime(parseTimestamp("2025-03-04T12:00:00Z").value()), (ClockTime{17, 45}));
    const ScopedVariable after("TZ", "JST-9");
    EXPECT_EQ(clock.timeZone().clockTime(parseTimestamp("2025-03-04T12:00:00Z").value()), (ClockTime{21, 0}));
}

TEST(SystemClock, aZoneThatIsUsedIsTheProcesss) {
    const ScopedVariable before("TZ", "JST-9");
    SystemClock::useZone("Asia/Kathmandu");
    EXPECT_THAT(shown({"2025-03-04T12:00:00Z"}), ElementsAre("17:45"));
    EXPECT_THAT(toldByDate({"2025-03-04T12:00:00Z"}), ElementsAre("17:45")) << "child processes see it too";
}
