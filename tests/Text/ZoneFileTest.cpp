#include "MenubarCore/Text/ZoneFile.h"

#include "MenubarCore/Text/TimeZone.h"

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;
using namespace std::chrono_literals;

namespace {

std::string bigEndian(std::uint64_t value, int size) {
    std::string bytes;
    for (int shift = (size - 1) * 8; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(static_cast<unsigned char>(value >> shift));
    }
    return bytes;
}

/// A zone file as a test wants it: offsets in seconds, changes from 1970.
struct Recipe {
    struct Change {
        std::int64_t at;
        unsigned char type;
    };

    std::string magic = "TZif";
    char version = '2';
    std::vector<std::int32_t> offsets = {3600};
    std::vector<Change> changes = {};
    std::string rule = {};
    std::uint32_t leapSeconds = 0;

    [[nodiscard]] std::string header(std::size_t changeCount, std::size_t typeCount) const {
        std::string bytes = magic + version + std::string(15, '\0');
        for (const std::size_t count :
             {std::size_t{0}, std::size_t{0}, std::size_t{leapSeconds}, changeCount, typeCount, std::size_t{4}}) {
            bytes += bigEndian(count, 4);
        }
        return bytes;
    }

    [[nodiscard]] std::string bytes() const {
        // The block of the first version: no changes, one type and as many leap seconds.
        std::string result = header(0, 1) + std::string(6, '\0') + "LMT" + '\0' + std::string(8 * leapSeconds, '\0');
        result += header(changes.size(), offsets.size());
        for (const Change& change : changes) {
            result += bigEndian(static_cast<std::uint64_t>(change.at), 8);
        }
        for (const Change& change : changes) {
            result += static_cast<char>(change.type);
        }
        for (const std::int32_t offset : offsets) {
            result += bigEndian(static_cast<std::uint32_t>(offset), 4) + std::string(2, '\0');
        }
        return result + "LMT" + '\0' + std::string(12 * leapSeconds, '\0') + "\n" + rule + "\n";
    }
};

} // namespace

TEST(ZoneFile, aZoneWithoutChangesHasOneOffset) {
    const auto file = ZoneFile::parse(Recipe{.offsets = {-12600}}.bytes());
    ASSERT_TRUE(file);
    EXPECT_EQ(file->utcOffset(0s), -12600s);
    EXPECT_EQ(file->utcOffset(-62135596800s), -12600s);
    EXPECT_EQ(file->utcOffset(253402300799s), -12600s);
}

TEST(ZoneFile, eachChangeHoldsFromItsSecondOn) {
    const auto file =
        ZoneFile::parse(Recipe{.offsets = {100, 200, 300}, .changes = {{-50, 1}, {50, 2}, {90, 1}}}.bytes());
    ASSERT_TRUE(file);
    EXPECT_EQ(file->utcOffset(-51s), 100s);
    EXPECT_EQ(file->utcOffset(-50s), 200s);
    EXPECT_EQ(file->utcOffset(49s), 200s);
    EXPECT_EQ(file->utcOffset(50s), 300s);
    EXPECT_EQ(file->utcOffset(89s), 300s);
    EXPECT_EQ(file->utcOffset(90s), 200s);
    EXPECT_EQ(file->utcOffset(253402300799s), 200s) << "for ever, without a rule";
}

TEST(ZoneFile, afterTheLastChangeTheRuleGoesOn) {
    const auto file = ZoneFile::parse(Recipe{.offsets = {100, 3600}, .changes = {{0, 1}}, .rule = "JST-9"}.bytes());
    ASSERT_TRUE(file);
    EXPECT_EQ(file->utcOffset(-1s), 100s);
    EXPECT_EQ(file->utcOffset(0s), 9h);
    const auto ruleOnly = ZoneFile::parse(Recipe{.rule = "JST-9"}.bytes());
    ASSERT_TRUE(ruleOnly);
    EXPECT_EQ(ruleOnly->utcOffset(-100s), 9h);
}

TEST(ZoneFile, laterVersionsAreReadLikeTheSecond) {
    for (const char version : {'2', '3', '4'}) {
        EXPECT_TRUE(ZoneFile::parse(Recipe{.version = version}.bytes())) << version;
    }
    EXPECT_FALSE(ZoneFile::parse(Recipe{.version = '\0'}.bytes())) << "the first ends in 2038";
}

TEST(ZoneFile, aFileThatIsCutOffAnywhereIsAbsent) {
    const std::string whole =
        Recipe{.offsets = {100, 200}, .changes = {{0, 1}, {10, 0}}, .rule = "EST5EDT,M3.2.0,M11.1.0"}.bytes();
    ASSERT_TRUE(ZoneFile::parse(whole));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(ZoneFile::parse(whole.substr(0, length))) << length;
    }
}

TEST(ZoneFile, whatIsNoSoundZoneFileIsAbsent) {
    EXPECT_FALSE(ZoneFile::parse("")) << "nothing";
    EXPECT_FALSE(ZoneFile::parse(std::string(1000, '\0'))) << "zeros";
    EXPECT_FALSE(ZoneFile::parse(Recipe{.magic = "TZiF"}.bytes())) << "another magic number";
    EXPECT_FALSE(ZoneFile::parse(Recipe{.offsets = {}}.bytes())) << "no offset";
    EXPECT_FALSE(ZoneFile::parse(Recipe{.changes = {{0, 1}}}.bytes())) << "a change to an offset that is not there";
    EXPECT_FALSE(ZoneFile::parse(Recipe{.changes = {{1, 0}, {0, 0}}}.bytes())) << "changes out of order";
    EXPECT_FALSE(ZoneFile::parse(Recipe{.rule = "EST5EDT"}.bytes())) << "a rule without days";
    EXPECT_FALSE(ZoneFile::parse(Recipe{.leapSeconds = 1}.bytes())) << "leap seconds";
    EXPECT_TRUE(ZoneFile::parse(Recipe{.offsets = {93600, -93600}}.bytes())) << "26 hours";
    EXPECT_FALSE(ZoneFile::parse(Recipe{.offsets = {93601}}.bytes())) << "more than 26 hours";
    EXPECT_FALSE(ZoneFile::parse(Recipe{.offsets = {std::numeric_limits<std::int32_t>::min()}}.bytes()));
}

TEST(ZoneFile, countsBeyondTheFileDoNotTakeMemory) {
    std::string bytes = Recipe{}.bytes();
    const std::size_t secondHeader = bytes.find("TZif", 1);
    for (const std::size_t counts : {std::size_t{20}, secondHeader + 20}) {
        for (std::size_t count = 0; count < 6; ++count) {
            std::string broken = bytes;
            broken.replace(counts + count * 4, 4, std::string(4, '\xFF'));
            EXPECT_FALSE(ZoneFile::parse(broken)) << counts << " " << count;
        }
    }
}

TEST(ZoneFile, aTimeZoneIsMadeOfItUnderItsName) {
    const auto zone = TimeZone::fromZoneFile("America/Nowhere", Recipe{.offsets = {-12600}}.bytes());
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->name(), "America/Nowhere");
    EXPECT_EQ(zone->clockTime(Date{}), (ClockTime{20, 30}));
    EXPECT_EQ(zone->clockTime(Date{} - 1us), (ClockTime{20, 29}));
    EXPECT_FALSE(TimeZone::fromZoneFile("UTC", "no zone file"));
}
