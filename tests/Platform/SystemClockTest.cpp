#include "MenubarApp/Platform/SystemClock.h"

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

#include <gtest/gtest.h>

using namespace menubar;

namespace {

/// Sets TZ for one scope and puts back what was there.
class ZoneVariable {
public:
    explicit ZoneVariable(const char* value) {
        if (const char* before = std::getenv("TZ"); before != nullptr) {
            m_before = before;
        }
        ::setenv("TZ", value, 1);
    }

    ZoneVariable(const ZoneVariable&) = delete;
    ZoneVariable& operator=(const ZoneVariable&) = delete;

    ~ZoneVariable() {
        if (m_before) {
            ::setenv("TZ", m_before->c_str(), 1);
        } else {
            ::unsetenv("TZ");
        }
    }

private:
    std::optional<std::string> m_before;
};

} // namespace

TEST(SystemClock, nowIsTheSystemsTime) {
    const auto before = std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
    const Date now = SystemClock().now();
    const auto after = std::chrono::system_clock::now();
    EXPECT_LE(before, now);
    EXPECT_LE(now, after);
}

TEST(SystemClock, theZoneFollowsTheEnvironmentWithinTheSameClock) {
    const SystemClock clock;
    {
        const ZoneVariable zone("Asia/Kathmandu");
        EXPECT_EQ(clock.timeZone().name(), "Asia/Kathmandu");
    }
    const ZoneVariable zone("America/St_Johns");
    EXPECT_EQ(clock.timeZone().name(), "America/St_Johns");
}

TEST(SystemClock, aZoneThatIsNoneReadsAsUTC) {
    const ZoneVariable zone("Nowhere/Land");
    EXPECT_EQ(SystemClock().timeZone().clockTime(Date{}), (ClockTime{0, 0}));
}

TEST(SystemClock, agreesWithTheSystemsOwnLocalTime) {
    const Date now = SystemClock().now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    ASSERT_NE(::localtime_r(&seconds, &local), nullptr);
    EXPECT_EQ(SystemClock().timeZone().clockTime(now), (ClockTime{local.tm_hour, local.tm_min}));
}
