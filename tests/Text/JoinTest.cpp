#include "MenubarCore/Text/Join.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;
using Texts = std::vector<std::string>;

TEST(Join, putsTheSeparatorBetweenEachTwo) {
    EXPECT_EQ(joined(Texts{}, ", "), "");
    EXPECT_EQ(joined(Texts{"a"}, ", "), "a");
    EXPECT_EQ(joined(Texts{"a", "b", "c"}, ", "), "a, b, c");
}

TEST(Join, emptyTextsCountToo) {
    EXPECT_EQ(joined(Texts{""}, ", "), "");
    EXPECT_EQ(joined(Texts{"", "a", "", ""}, ", "), ", a, , ");
}
