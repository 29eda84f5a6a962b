#include "MenubarCore/Text/Timestamp.h"

#include "demo/Timestamp.h"

#include <gtest/gtest.h>

using namespace menubar;
using namespace std::chrono_literals;

TEST(DemoTimestamp, hasThreeFractionDigitsAndReadsBack) {
    EXPECT_EQ(demo::timestampText(Date{}), "1970-01-01T00:00:00.000Z");
    EXPECT_EQ(demo::timestampText(Date{} + 1500ms + 999us), "1970-01-01T00:00:01.500Z");
    for (const char* text : {"2025-03-04T10:15:30.250Z", "2024-02-29T23:59:59.999Z", "0001-01-01T00:00:00.000Z",
                             "9999-12-31T23:59:59.000Z"}) {
        EXPECT_EQ(demo::timestampText(parseTimestamp(text).value_or(Date{})), text);
    }
}
