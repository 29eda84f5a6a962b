#include "MenubarCore/Menu/MainMenu.h"

#include "tests/support/MenuDump.h"

#include <gtest/gtest.h>

using namespace menubar;

TEST(MainMenu, itHasThreeMenusWithTheUsualKeys) {
    EXPECT_EQ(dump(MainMenu::make()), R"("ostrel-menubar"
  "Settings..." key=cmd-, -> show:
  ---
  "Quit ostrel-menubar" key=cmd-q -> terminate:
"Edit"
  "Undo" key=cmd-z -> undo:
  "Redo" key=shift-cmd-z -> redo:
  ---
  "Cut" key=cmd-x -> cut:
  "Copy" key=cmd-c -> copy:
  "Paste" key=cmd-v -> paste:
  "Select All" key=cmd-a -> selectAll:
"Window"
  "Close" key=cmd-w -> performClose:
  "Minimize" key=cmd-m -> performMiniaturize:
)");
}
