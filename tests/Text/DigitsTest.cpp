#include "MenubarCore/Text/Digits.h"

#include <gtest/gtest.h>

namespace menubar {
namespace {

TEST(Digits, areTakenOffTheFrontUpToTheLimit) {
    std::string_view text = "0129x";
    EXPECT_EQ(takeDigits(text, 3), "012");
    EXPECT_EQ(takeDigits(text), "9");
    EXPECT_EQ(takeDigits(text), "");
    EXPECT_EQ(text, "x");
    for (std::string_view none : {"", "-1", "/", ":", "٣"}) {
        EXPECT_EQ(takeDigits(none), "");
    }
}

} // namespace
} // namespace menubar
