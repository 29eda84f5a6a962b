// The menu of a picker, which is a panel of the stand-in's.
#import "tests/appkit/ViewHostFixture.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/MenuDriver.h"

#include <string>
#include <vector>

namespace menubar {
namespace {

using Lines = std::vector<std::string>;

constexpr unichar space = ' ';

using PickerInAWindow = driver::ControlsInAWindow;

TEST_F(PickerInAWindow, aPickersMenuOpensByMouseAndKeyboard) {
    Picker many{.selection = 50};
    for (int i = 0; i < 100; ++i) {
        many.options.push_back("option " + std::to_string(i));
    }
    const ControlId shown = add(many);
    auto* picker = native<NSPopUpButton>(shown);
    ASSERT_FALSE(
        driver::trackMenu([&] { [picker performClick:nil]; }, {driver::key(NSEndFunctionKey), driver::key('\r')}));
    EXPECT_EQ(m_events->takeLog(), Lines{"picked 1 99"});
    EXPECT_EQ([picker indexOfSelectedItem], 99);
    ASSERT_FALSE(driver::trackMenu([&] { [picker performClick:nil]; }, {driver::key(0x1B)}));
    EXPECT_EQ(m_events->takeLog(), Lines{});
    focus(shown);
    ASSERT_FALSE(driver::trackMenu([&] { key(space); }, {driver::click("option 98")}));
    EXPECT_EQ(m_events->takeLog(), Lines{"picked 1 98"});
}

TEST_F(PickerInAWindow, anEmptyPickerOpensNothing) {
    const ControlId shown = add(Picker{});
    [native<NSPopUpButton>(shown) performClick:nil];
    EXPECT_EQ(m_events->takeLog(), Lines{});
}

} // namespace
} // namespace menubar
