#include "MenubarApp/Settings/ListControl.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

using Ids = std::vector<std::string>;

TEST(ListItemIds, eachItemHasItsOwnThatStays) {
    ListItemIds lists;
    const Ids first = lists.ids("a", 3);
    EXPECT_EQ(first.size(), 3U);
    EXPECT_NE(first[0], first[1]);
    EXPECT_NE(first[1], first[2]);
    EXPECT_EQ(lists.ids("a", 3), first);
}

TEST(ListItemIds, aRemovedItemTakesItsOwnAway) {
    ListItemIds lists;
    const Ids before = lists.ids("a", 3);
    lists.remove("a", 1);
    EXPECT_EQ(lists.ids("a", 2), (Ids{before[0], before[2]}));
}

TEST(ListItemIds, otherwiseAListGrowsAndShrinksAtItsEnd) {
    ListItemIds lists;
    const Ids before = lists.ids("a", 2);
    const Ids longer = lists.ids("a", 3);
    EXPECT_EQ((Ids{longer[0], longer[1]}), before);
    EXPECT_EQ(lists.ids("a", 1), Ids{before[0]});
    EXPECT_NE(lists.ids("a", 2)[1], before[1]);
}

TEST(ListItemIds, listsDoNotShareThem) {
    ListItemIds lists;
    EXPECT_NE(Ids(lists.ids("a", 1)), Ids(lists.ids("b", 1)));
    lists.remove("c", 0);
    lists.remove("a", 5);
    EXPECT_EQ(lists.ids("a", 1).size(), 1U);
    EXPECT_TRUE(lists.ids("c", 0).empty());
}

} // namespace
} // namespace menubar
