#import "tests/appkit/MenuDriver.h"
#import "tests/appkit/ViewHostFixture.h"

#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"

#include <limits>
#include <string>
#include <vector>

namespace menubar {
namespace {

using Lines = std::vector<std::string>;

constexpr unichar space = ' ';

class ControlInAWindow : public driver::ControlsInAWindow {
protected:
    Lines takeLog() { return m_events->takeLog(); }

    Measured measured(ControlId shown, const View::Content& content) {
        return host().measure(shown, {.content = content}, std::numeric_limits<double>::infinity());
    }
};

// Buttons

TEST_F(ControlInAWindow, aButtonReportsClickKeyAndShortcut) {
    const ControlId save = add(Button{.title = "Save", .shortcut = KeyShortcut::commandS});
    [native<NSButton>(save) performClick:nil];
    EXPECT_EQ(takeLog(), Lines{"pressed 1"});
    focus(save);
    key(space);
    EXPECT_EQ(takeLog(), Lines{"pressed 1"});
    key('s', NSEventModifierFlagCommand);
    EXPECT_EQ(takeLog(), Lines{"pressed 1"});
    click(native<NSButton>(save));
    EXPECT_EQ(takeLog(), Lines{"pressed 1"});
}

TEST_F(ControlInAWindow, aDisabledButtonReportsNothing) {
    const ControlId save = add(Button{.title = "Save", .shortcut = KeyShortcut::commandS, .enabled = false});
    [native<NSButton>(save) performClick:nil];
    click(native<NSButton>(save));
    key('s', NSEventModifierFlagCommand);
    EXPECT_EQ(takeLog(), Lines{});
    update(save, Button{.title = "Save", .shortcut = KeyShortcut::commandS},
           Button{.title = "Save", .shortcut = KeyShortcut::commandS, .enabled = false});
    key('s', NSEventModifierFlagCommand);
    EXPECT_EQ(takeLog(), Lines{"pressed 1"});
}

TEST_F(ControlInAWindow, aButtonMayDestroyItself) {
    const ControlId save = add(Button{.title = "Save"});
    m_events->onEvent = [&] { host().destroy(save); };
    [native<NSButton>(save) performClick:nil];
    EXPECT_EQ(takeLog(), Lines{"pressed 1"});
    EXPECT_EQ(host().nativeView(save), nil);
}

TEST_F(ControlInAWindow, aButtonMayTakeTheWholeHostWithIt) {
    const ControlId save = add(Button{.title = "Save"});
    m_events->onEvent = [&] { m_host.reset(); };
    [native<NSButton>(save) performClick:nil];
    EXPECT_EQ(takeLog(), Lines{"pressed 1"});
}

TEST_F(ControlInAWindow, aButtonShowsTitleAndSymbol) {
    const Button plain{.title = "Add", .style = ButtonStyle::borderless};
    const Button withSymbol{.title = "Add", .symbol = "plus.circle", .style = ButtonStyle::borderless};
    const Button symbolAlone{.symbol = "minus.circle", .style = ButtonStyle::borderless};
    const ControlId shown = add(plain);
    auto* button = native<NSButton>(shown);
    EXPECT_EQ([button image], nil);
    const double textWidth = measured(shown, plain).width;
    update(shown, withSymbol, plain);
    EXPECT_NE([button image], nil);
    EXPECT_GT(measured(shown, withSymbol).width, textWidth + 10);
    update(shown, symbolAlone, withSymbol);
    EXPECT_EQ(toString([button title]), "");
    EXPECT_LT(measured(shown, symbolAlone).width, textWidth);
    EXPECT_FALSE([button isBordered]);
}

TEST_F(ControlInAWindow, everySymbolOfTheViewsHasADrawing) {
    for (const char* name : {"xmark.octagon", "exclamationmark.triangle", "arrow.clockwise",
                             "arrow.triangle.2.circlepath", "lock", "minus.circle", "plus.circle"}) {
        const Symbol symbol{.name = name};
        const ControlId shown = add(symbol);
        EXPECT_NE([native<NSImageView>(shown) image], nil) << name;
        EXPECT_GT(measured(shown, symbol).width, 8.0) << name;
    }
}

// Switches and checkboxes

TEST_F(ControlInAWindow, aSwitchReportsItsNewStateByEachHand) {
    const ControlId shown = add(Toggle{});
    auto* toggle = native<NSSwitch>(shown);
    [toggle performClick:nil];
    EXPECT_EQ(takeLog(), Lines{"toggled 1 on"});
    click(toggle);
    EXPECT_EQ(takeLog(), Lines{"toggled 1 off"});
    focus(shown);
    key(space);
    EXPECT_EQ(takeLog(), Lines{"toggled 1 on"});
    update(shown, Toggle{.isOn = false}, Toggle{.isOn = true});
    EXPECT_EQ([toggle state], static_cast<NSControlStateValue>(NSControlStateValueOff));
    EXPECT_EQ(takeLog(), Lines{});
}

TEST_F(ControlInAWindow, aDisabledSwitchStaysAsItIs) {
    const ControlId shown = add(Toggle{.isOn = true, .enabled = false});
    auto* toggle = native<NSSwitch>(shown);
    [toggle performClick:nil];
    click(toggle);
    EXPECT_EQ(takeLog(), Lines{});
    EXPECT_EQ([toggle state], static_cast<NSControlStateValue>(NSControlStateValueOn));
}

TEST_F(ControlInAWindow, aCheckboxReportsItsNewState) {
    const ControlId shown = add(Checkbox{.title = "started", .isOn = true});
    auto* box = native<NSButton>(shown);
    EXPECT_EQ([box state], NSControlStateValueOn);
    [box performClick:nil];
    click(box);
    EXPECT_EQ(takeLog(), (Lines{"toggled 1 off", "toggled 1 on"}));
    update(shown, Checkbox{.title = "begun", .isOn = false}, Checkbox{.title = "started", .isOn = true});
    EXPECT_EQ([box state], NSControlStateValueOff);
    EXPECT_EQ(toString([box title]), "begun");
    EXPECT_EQ(takeLog(), Lines{});
}

// Steppers

/// Up is the upper half of the control.
constexpr NSPoint upper{0.0, 6.0};
constexpr NSPoint lower{0.0, -6.0};

struct StepCase {
    const char* name;
    Stepper stepper;
    Lines up;
    Lines down;
};

TEST_F(ControlInAWindow, aStepperReportsDirectionsWithinItsBounds) {
    const std::vector<StepCase> cases = {
        {"without bounds", {.value = 5.0}, {"stepped 1 up"}, {"stepped 1 down"}},
        {"at its maximum", {.value = 5.0, .max = 5.0}, {}, {"stepped 1 down"}},
        {"at its minimum", {.value = 5.0, .min = 5.0}, {"stepped 1 up"}, {}},
        {"beyond its maximum", {.value = 9.0, .max = 5.0}, {}, {"stepped 1 down"}},
        {"between", {.value = 5.0, .min = 4.0, .max = 6.0}, {"stepped 1 up"}, {"stepped 1 down"}},
        {"disabled", {.value = 5.0, .enabled = false}, {}, {}},
    };
    const ControlId shown = add(Stepper{});
    Stepper before;
    for (const StepCase& c : cases) {
        SCOPED_TRACE(c.name);
        update(shown, c.stepper, before);
        before = c.stepper;
        auto* view = native<NSStepper>(shown);
        const bool isFlipped = [view isFlipped];
        click(view, isFlipped ? lower : upper);
        EXPECT_EQ(takeLog(), c.up);
        click(view, isFlipped ? upper : lower);
        EXPECT_EQ(takeLog(), c.down);
    }
}

TEST_F(ControlInAWindow, aStepperHoldsNoValueOfItsOwn) {
    const ControlId shown = add(Stepper{.value = 1.0});
    focus(shown);
    for (int i = 0; i < 5; ++i) {
        key(NSUpArrowFunctionKey);
    }
    EXPECT_EQ(takeLog(), Lines(5, "stepped 1 up"));
    key(NSDownArrowFunctionKey);
    EXPECT_EQ(takeLog(), Lines{"stepped 1 down"});
}

TEST_F(ControlInAWindow, aStepperThatIsHeldDownGoesOnUntilItsBound) {
    Stepper shownNow{.value = 1.0, .max = 4.0};
    const ControlId shown = add(shownNow);
    auto* view = native<NSStepper>(shown);
    m_events->onEvent = [&] {
        const Stepper before = shownNow;
        shownNow.value += 1.0;
        update(shown, shownNow, before);
    };
    // As the tracking of an arrow does it, which keeps a count of its own.
    const double begin = [view doubleValue];
    for (int step = 1; step <= 5; ++step) {
        [view setDoubleValue:begin + step];
        [view sendAction:[view action] to:[view target]];
    }
    EXPECT_EQ(takeLog(), Lines(3, "stepped 1 up"));
    m_events->onEvent = nullptr;
    [view setDoubleValue:[view doubleValue] - 1.0];
    [view sendAction:[view action] to:[view target]];
    EXPECT_EQ(takeLog(), Lines{"stepped 1 down"});
}

// Pickers

Lines titles(NSPopUpButton* picker) {
    Lines result;
    for (NSMenuItem* item in [picker itemArray]) {
        result.push_back(toString([item title]));
    }
    return result;
}

TEST_F(ControlInAWindow, aPickerKeepsOptionsOfTheSameNameApart) {
    const ControlId shown = add(Picker{.options = {"a", "b", "a", ""}, .selection = 2});
    auto* picker = native<NSPopUpButton>(shown);
    EXPECT_EQ(titles(picker), (Lines{"a", "b", "a", ""}));
    EXPECT_EQ([picker indexOfSelectedItem], 2);
    [[picker menu] performActionForItemAtIndex:0];
    EXPECT_EQ([picker indexOfSelectedItem], 0);
    EXPECT_EQ(takeLog(), Lines{"picked 1 0"});
}

TEST_F(ControlInAWindow, aPickerShowsNothingWithoutASelection) {
    const Picker none{.options = {"a", "b"}};
    const ControlId shown = add(none);
    auto* picker = native<NSPopUpButton>(shown);
    EXPECT_EQ([picker indexOfSelectedItem], -1);
    const Picker second{.options = {"a", "b"}, .selection = 1};
    update(shown, second, none);
    EXPECT_EQ([picker indexOfSelectedItem], 1);
    update(shown, none, second);
    EXPECT_EQ([picker indexOfSelectedItem], -1);
    update(shown, Picker{.options = {"c"}, .selection = 0}, none);
    EXPECT_EQ(titles(picker), Lines{"c"});
    EXPECT_EQ([picker indexOfSelectedItem], 0);
    EXPECT_EQ(takeLog(), Lines{});
}

} // namespace
} // namespace menubar
