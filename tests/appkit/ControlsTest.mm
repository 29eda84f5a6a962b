#import "tests/appkit/MenuDriver.h"
#import "tests/appkit/ViewHostFixture.h"

#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace menubar {
namespace {

using Lines = std::vector<std::string>;

constexpr unichar space = ' ';
constexpr double infinity = std::numeric_limits<double>::infinity();

class ControlInAWindow : public driver::ControlsInAWindow {
  protected:
    Lines takeLog() { return m_events->takeLog(); }

    Measured measured(ControlId shown, const Control::Content& content, double width = infinity) {
        return host().measure(shown, {.content = content}, width);
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
    key('s', NSCommandKeyMask);
    EXPECT_EQ(takeLog(), Lines{"pressed 1"});
    click(native<NSButton>(save));
    EXPECT_EQ(takeLog(), Lines{"pressed 1"});
}

TEST_F(ControlInAWindow, aDisabledButtonReportsNothing) {
    const ControlId save = add(Button{.title = "Save", .shortcut = KeyShortcut::commandS, .enabled = false});
    [native<NSButton>(save) performClick:nil];
    click(native<NSButton>(save));
    key('s', NSCommandKeyMask);
    EXPECT_EQ(takeLog(), Lines{});
    update(save, Button{.title = "Save", .shortcut = KeyShortcut::commandS},
           Button{.title = "Save", .shortcut = KeyShortcut::commandS, .enabled = false});
    key('s', NSCommandKeyMask);
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

TEST_F(ControlInAWindow, aPickersMenuOpensByMouseAndKeyboard) {
    Picker many{.selection = 50};
    for (int i = 0; i < 100; ++i) {
        many.options.push_back("option " + std::to_string(i));
    }
    const ControlId shown = add(many);
    auto* picker = native<NSPopUpButton>(shown);
    ASSERT_FALSE(
        driver::trackMenu([&] { [picker performClick:nil]; }, {driver::key(NSEndFunctionKey), driver::key('\r')}));
    EXPECT_EQ(takeLog(), Lines{"picked 1 99"});
    EXPECT_EQ([picker indexOfSelectedItem], 99);
    ASSERT_FALSE(driver::trackMenu([&] { [picker performClick:nil]; }, {driver::key(0x1B)}));
    EXPECT_EQ(takeLog(), Lines{});
    focus(shown);
    ASSERT_FALSE(driver::trackMenu([&] { key(space); }, {driver::click("option 98")}));
    EXPECT_EQ(takeLog(), Lines{"picked 1 98"});
}

TEST_F(ControlInAWindow, anEmptyPickerOpensNothing) {
    const ControlId shown = add(Picker{});
    [native<NSPopUpButton>(shown) performClick:nil];
    EXPECT_EQ(takeLog(), Lines{});
}

// Texts

TEST_F(ControlInAWindow, aTextIsAsHighAsItsWrappedLines) {
    const Text text{.text = "one two three four five six seven eight nine ten"};
    const ControlId shown = add(text);
    const Measured natural = measured(shown, text);
    for (const double width : {natural.width, natural.width / 2, natural.width / 3, 60.0}) {
        const Measured wrapped = measured(shown, text, width);
        EXPECT_LE(wrapped.width, width);
        EXPECT_GE(wrapped.width * wrapped.height, natural.width * natural.height * 0.9) << width;
        EXPECT_EQ(static_cast<int>(wrapped.height) % static_cast<int>(natural.height), 0) << width;
    }
    EXPECT_EQ(measured(shown, text, natural.width).height, natural.height);
    EXPECT_GT(measured(shown, text, natural.width - 1).height, natural.height);
}

TEST_F(ControlInAWindow, aTextHonoursItsOwnLinesAndItsLimit) {
    const Text text{.text = "a\nb\nc\nd"};
    const ControlId shown = add(text);
    const double line = measured(shown, text).height / 4;
    Text limited = text;
    limited.lineLimit = 2;
    update(shown, limited, text);
    EXPECT_EQ(measured(shown, limited).height, 2 * line);
}

TEST_F(ControlInAWindow, anEmptyTextIsOneLineHigh) {
    const Text empty{};
    const Text letter{.text = "a"};
    const ControlId shown = add(empty);
    const double height = measured(shown, empty).height;
    update(shown, letter, empty);
    EXPECT_EQ(measured(shown, letter).height, height);
}

TEST_F(ControlInAWindow, aWordThatIsWiderThanItsRoomIsBroken) {
    const Text text{.text = std::string(200, 'x')};
    const ControlId shown = add(text);
    const Measured natural = measured(shown, text);
    const Measured wrapped = measured(shown, text, 100.0);
    EXPECT_LE(wrapped.width, 100.0);
    EXPECT_GE(wrapped.height, natural.height * (natural.width / 100.0));
}

TEST_F(ControlInAWindow, aTextChangesItsLook) {
    const Text before{.text = "a"};
    const Text now{.text = "b", .font = Font::headline, .color = TextColor::red, .selectable = true, .lineLimit = 1};
    const ControlId shown = add(before);
    auto* label = native<NSTextField>(shown);
    EXPECT_FALSE([label isSelectable]);
    update(shown, now, before);
    EXPECT_EQ(toString([label stringValue]), "b");
    EXPECT_TRUE([[label font] isEqual:[NSFont boldSystemFontOfSize:[NSFont systemFontSize]]]);
    EXPECT_TRUE([[label textColor] isEqual:[NSColor systemRedColor]]);
    EXPECT_TRUE([label isSelectable]);
    EXPECT_FALSE([label isEditable]);
}

TEST_F(ControlInAWindow, aSelectableTextCanBeCopiedAndNotTypedInto) {
    const ControlId shown = add(Text{.text = "/bin/ostrel failed", .selectable = true});
    click(host().nativeView(shown));
    ASSERT_NE(editor(), nil);
    [editor() selectAll:nil];
    [editor() copy:nil];
    EXPECT_EQ(toString([[NSPasteboard generalPasteboard] stringForType:NSStringPboardType]), "/bin/ostrel failed");
    type("x");
    EXPECT_EQ(shownText(shown), "/bin/ostrel failed");
    EXPECT_EQ(takeLog(), Lines{});
}

// The window

TEST_F(ControlInAWindow, tellsItsSizeAtFirstAndAfterEachChange) {
    EXPECT_EQ(m_events->sizes, (std::vector<Size>{{.width = 600.0, .height = 400.0}}));
    NSRect frame = [m_window.get() frame];
    frame.size.width += 50;
    [m_window.get() setFrame:frame display:YES];
    ASSERT_EQ(m_events->sizes.size(), 2U);
    EXPECT_EQ(m_events->sizes.back(), (Size{.width = 650.0, .height = 400.0}));
}

TEST_F(ControlInAWindow, ordersControlsAsTold) {
    const ControlId a = add(Text{.text = "a"});
    const ControlId b = add(Text{.text = "b"});
    const ControlId c = add(Text{.text = "c"});
    host().arrange(windowContent, std::vector{c, a, b});
    NSArray* expected = @[ host().nativeView(c), host().nativeView(a), host().nativeView(b) ];
    EXPECT_TRUE([[m_content.get() subviews] isEqualToArray:expected]);
}

TEST_F(ControlInAWindow, holdsControlsInBoxesAndScrollViews) {
    const ControlId scroll = add(ScrollView{});
    host().place(scroll, {.x = 0, .y = 0, .width = 300, .height = 200});
    const ControlId box = add(Box{}, scroll);
    const ControlId text = add(Text{.text = "a"}, box);
    host().setContentSize(scroll, {.width = 300, .height = 1000});
    EXPECT_EQ([host().nativeView(text) superview], host().nativeView(box));
    NSView* document = [native<NSScrollView>(scroll) documentView];
    EXPECT_EQ([host().nativeView(box) superview], document);
    EXPECT_TRUE([document isFlipped]);
    EXPECT_TRUE([host().nativeView(box) isFlipped]);
    EXPECT_EQ(NSHeight([document frame]), 1000.0);
    EXPECT_EQ(NSWidth([native<NSScrollView>(scroll) documentVisibleRect]), 300.0) << "all of its width is shown";
}

TEST_F(ControlInAWindow, scrollsAsLittleAsNeeded) {
    const ControlId scroll = add(ScrollView{});
    host().place(scroll, {.x = 0, .y = 0, .width = 300, .height = 200});
    host().setContentSize(scroll, {.width = 300, .height = 1000});
    const auto top = [&] { return NSMinY([native<NSScrollView>(scroll) documentVisibleRect]); };
    EXPECT_EQ(top(), 0.0);
    host().scrollToVisible(scroll, {.x = 0, .y = 500, .width = 300, .height = 50});
    EXPECT_EQ(top(), 350.0);
    host().scrollToVisible(scroll, {.x = 0, .y = 400, .width = 300, .height = 50});
    EXPECT_EQ(top(), 350.0) << "it is in sight";
    host().scrollToVisible(scroll, {.x = 0, .y = 100, .width = 300, .height = 50});
    EXPECT_EQ(top(), 100.0);
    host().setContentSize(scroll, {.width = 300, .height = 1100});
    EXPECT_EQ(top(), 100.0) << "a change of the content keeps the place";
}

TEST_F(ControlInAWindow, whatGetsTheFocusComesIntoSight) {
    const ControlId scroll = add(ScrollView{});
    host().place(scroll, {.x = 0, .y = 0, .width = 300, .height = 100});
    const std::vector<Control::Content> contents = {Button{.title = "a"},    Toggle{},     Checkbox{.title = "b"},
                                                    TextField{.text = "c"},  TextEditor{}, Stepper{},
                                                    Picker{.options = {"d"}}};
    std::vector<ControlId> made;
    for (const auto& content : contents) {
        const ControlId shown = add(content, scroll);
        host().place(shown, {.x = 10, .y = 300.0 * static_cast<double>(made.size()), .width = 100, .height = 24});
        made.push_back(shown);
    }
    host().setContentSize(scroll, {.width = 300, .height = 3000});
    for (const ControlId shown : made) {
        focus(shown);
        EXPECT_TRUE(
            NSContainsRect([native<NSScrollView>(scroll) documentVisibleRect], [host().nativeView(shown) frame]))
            << shown;
        EXPECT_EQ(focused(), shown);
    }
}

TEST_F(ControlInAWindow, showsHelp) {
    host().create(1, windowContent, {.content = Button{.title = "a"}, .help = "first"});
    NSView* view = host().nativeView(1);
    EXPECT_EQ(toString([view toolTip]), "first");
    host().update(1, {.content = Button{.title = "a"}, .help = "second"},
                  {.content = Button{.title = "a"}, .help = "first"});
    EXPECT_EQ(toString([view toolTip]), "second");
    host().update(1, {.content = Button{.title = "a"}}, {.content = Button{.title = "a"}, .help = "second"});
    EXPECT_EQ([[view toolTip] length], 0U);
}

TEST_F(ControlInAWindow, everyControlThatTakesKeysIsInTheTabOrder) {
    const std::vector<ControlId> order = {
        add(Button{.title = "a"}),    add(Toggle{}),  add(Checkbox{.title = "b"}),  add(TextField{.text = "c"}),
        add(TextEditor{.text = "d"}), add(Stepper{}), add(Picker{.options = {"e"}})};
    host().setTabOrder(order);
    focus(order.front());
    for (std::size_t i = 1; i <= order.size(); ++i) {
        key('\t');
        EXPECT_EQ(focused(), order[i % order.size()]) << i;
    }
    for (std::size_t i = order.size(); i > 0; --i) {
        key(0x19, NSShiftKeyMask);
        EXPECT_EQ(focused(), order[i - 1]) << i;
    }
}

TEST_F(ControlInAWindow, nothingIsLeftInTheWindowAfterEverythingIsDestroyed) {
    const ControlId box = add(Box{});
    const ControlId inside = add(TextField{.text = "a"}, box);
    const ControlId spinner = add(Spinner{});
    focus(inside);
    (void)takeLog();
    for (const ControlId gone : {inside, box, spinner}) {
        host().destroy(gone);
    }
    EXPECT_EQ([[m_content.get() subviews] count], 0U);
    EXPECT_EQ([m_window.get() firstResponder], m_window.get());
    EXPECT_EQ(takeLog(), Lines{});
}

} // namespace
} // namespace menubar
