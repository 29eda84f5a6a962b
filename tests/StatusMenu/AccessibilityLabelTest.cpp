#include "MenubarApp/StatusMenu/AccessibilityLabel.h"

#include <gtest/gtest.h>

namespace menubar {
namespace {

TEST(AccessibilityLabel, namesProductPercentageAndState) {
    EXPECT_EQ(accessibilityLabel({.symbolName = "eye", .title = "72%", .tooltip = "Daemon running"}),
              "ostrel, 72%, Daemon running");
}

TEST(AccessibilityLabel, leavesOutAnUnknownPercentage) {
    EXPECT_EQ(accessibilityLabel({.symbolName = "eye.slash", .title = "--", .tooltip = "Daemon stopped"}),
              "ostrel, Daemon stopped");
}

TEST(AccessibilityLabel, inCompactModeTheTooltipCarriesThePercentage) {
    EXPECT_EQ(accessibilityLabel({.symbolName = "eye", .title = "", .tooltip = "Daemon running · worst session 72%"}),
              "ostrel, Daemon running · worst session 72%");
}

TEST(AccessibilityLabel, isTheProductAloneWhenNothingElseIsKnown) {
    EXPECT_EQ(accessibilityLabel({}), "ostrel");
}

} // namespace
} // namespace menubar
