#include "MenubarCore/Menu/MenuItem.h"

#include <set>
#include <string_view>

#include <gtest/gtest.h>

using namespace menubar;

TEST(MenuAction, everyOneHasATextOfItsOwn) {
    std::set<std::string_view> texts;
    const int last = static_cast<int>(MenuAction::quit);
    for (int action = 0; action <= last; ++action) {
        texts.insert(rawText(static_cast<MenuAction>(action)));
    }
    EXPECT_EQ(texts.size(), static_cast<std::size_t>(last) + 1);
    EXPECT_EQ(rawText(MenuAction::none), "");
    EXPECT_EQ(rawText(MenuAction::focusSession), "focusSession");
}
