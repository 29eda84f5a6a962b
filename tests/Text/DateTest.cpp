#include "MenubarCore/Text/Date.h"

#include <gtest/gtest.h>

using namespace menubar;
using namespace std::chrono_literals;

TEST(Date, theSecondsBetweenTwoDatesKeepTheirSignAndFraction) {
    const Date earlier{};
    EXPECT_DOUBLE_EQ(secondsBetween(earlier, earlier + 1500ms), 1.5);
    EXPECT_DOUBLE_EQ(secondsBetween(earlier + 1500ms, earlier), -1.5);
}
