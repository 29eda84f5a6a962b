#include "MenubarApp/Platform/ZoneDatabase.h"

#include "MenubarApp/Platform/PosixFileManager.h"
#include "MenubarCore/Text/Timestamp.h"

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;

namespace {

/// Files by path, for a system whose zone database holds what the test says.
class FakeFiles final : public FileManager {
public:
    std::map<std::string, std::string> files;

    [[nodiscard]] bool exists(const std::string& path) const override { return files.contains(path); }

    [[nodiscard]] std::expected<std::string, FileError> contents(const std::string& path) const override {
        const auto file = files.find(path);
        return file == files.end() ? std::unexpected(FileError{"none"})
                                   : std::expected<std::string, FileError>(file->second);
    }
};

/// Every zone and link of this system's zone database, from the list that it comes with; none where it has no list.
std::vector<std::string> listedZones() {
    std::ifstream list(std::string(ZoneDatabase::root) + "tzdata.zi");
    std::vector<std::string> names;
    for (std::string line; std::getline(list, line);) {
        if (line.starts_with("Z ")) {
            names.push_back(line.substr(2, line.find(' ', 2) - 2));
        } else if (line.starts_with("L ")) {
            names.push_back(line.substr(line.rfind(' ') + 1));
        }
    }
    return names;
}

/// The C library's reading of the same files, for as long as this object lives.
class SystemZone {
public:
    explicit SystemZone(const std::string& name) {
        if (const char* before = std::getenv("TZ"); before != nullptr) {
            m_before = before;
        }
        ::setenv("TZ", name.c_str(), 1);
        ::tzset();
    }

    SystemZone(const SystemZone&) = delete;
    SystemZone& operator=(const SystemZone&) = delete;

    ~SystemZone() {
        m_before ? ::setenv("TZ", m_before->c_str(), 1) : ::unsetenv("TZ");
        ::tzset();
    }

    [[nodiscard]] ClockTime clockTime(Date date) const {
        const std::time_t seconds = std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
        std::tm local{};
        ::localtime_r(&seconds, &local);
        return {local.tm_hour, local.tm_min};
    }

private:
    std::optional<std::string> m_before;
};

/// An instant from year 1 to year 9999, one in two of them from 1900 to 2100.
Date anyDate(std::mt19937_64& random) {
    const bool isNear = random() % 2 == 0;
    const Date first = parseTimestamp(isNear ? "1900-01-01T00:00:00Z" : "0001-01-01T00:00:00Z").value();
    const Date last = parseTimestamp(isNear ? "2100-01-01T00:00:00Z" : "9999-12-31T00:00:00Z").value();
    return first +
           Date::duration(static_cast<Date::rep>(random() % static_cast<std::uint64_t>((last - first).count())));
}

} // namespace

TEST(ZoneDatabase, everyZoneOfTheSystemAgreesWithTheCLibraryAtAnyTime) {
    const std::vector<std::string> zones = listedZones();
    if (zones.empty()) {
        GTEST_SKIP() << "no zone database in " << ZoneDatabase::root;
    }
    EXPECT_GT(zones.size(), 500U);
    std::mt19937_64 random(20250304);
    for (const std::string& name : zones) {
        const std::optional<TimeZone> zone = ZoneDatabase::zone(name, PosixFileManager());
        ASSERT_TRUE(zone) << name;
        const SystemZone system(name);
        for (int round = 0; round < 500; ++round) {
            const Date date = anyDate(random);
            ASSERT_EQ(zone->clockTime(date), system.clockTime(date)) << name << " " << date.time_since_epoch().count();
        }
    }
}

TEST(ZoneDatabase, withoutZoneFilesICUsZonesAreTaken) {
    const auto zone = ZoneDatabase::zone("Asia/Kathmandu", FakeFiles());
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->name(), "Asia/Kathmandu");
    EXPECT_EQ(zone->clockTime(parseTimestamp("2025-03-04T12:00:00Z").value()), (ClockTime{17, 45}));
    EXPECT_FALSE(ZoneDatabase::zone("Nowhere/Land", FakeFiles()));
}

TEST(ZoneDatabase, theSystemsZoneFileIsTakenBeforeICUs) {
    const auto honolulu = PosixFileManager().contents(std::string(ZoneDatabase::root) + "Pacific/Honolulu");
    if (!honolulu) {
        GTEST_SKIP() << "no zone database in " << ZoneDatabase::root;
    }
    FakeFiles files;
    files.files["/usr/share/zoneinfo/Europe/Berlin"] = *honolulu;
    files.files["/usr/share/zoneinfo/Brand/New"] = *honolulu;
    for (const char* const name : {"Europe/Berlin", "Brand/New"}) {
        const auto zone = ZoneDatabase::zone(name, files);
        ASSERT_TRUE(zone) << name;
        EXPECT_EQ(zone->name(), name);
        EXPECT_EQ(zone->clockTime(parseTimestamp("2025-03-04T12:00:00Z").value()), (ClockTime{2, 0})) << name;
    }
}

TEST(ZoneDatabase, aDamagedZoneFileIsPassedOver) {
    FakeFiles files;
    files.files["/usr/share/zoneinfo/Asia/Tokyo"] = "TZif";
    const auto zone = ZoneDatabase::zone("Asia/Tokyo", files);
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->clockTime(Date{}), (ClockTime{9, 0}));
}

TEST(ZoneDatabase, noNameLeadsOutOfTheDatabaseOrToWhatIsNoZone) {
    for (const char* const name : {"",
                                   "..",
                                   "../../../etc/localtime",
                                   "/etc/localtime",
                                   "Europe/../UTC",
                                   "Europe//Berlin",
                                   "Europe",
                                   "Europe/",
                                   "./UTC",
                                   "posix/Europe/Berlin",
                                   "right/Europe/Berlin",
                                   "localtime",
                                   "posixrules",
                                   "tzdata.zi",
                                   "zone.tab",
                                   "leapseconds",
                                   "europe/berlin",
                                   "PST",
                                   "Etc/Unknown",
                                   "GMT+3"}) {
        EXPECT_FALSE(ZoneDatabase::zone(name, PosixFileManager())) << name;
    }
}
