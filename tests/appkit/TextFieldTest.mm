#import "tests/appkit/ViewHostFixture.h"

#import "MenubarApp/AppKit/Controls/TextField.h"

#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"

#include <string>
#include <vector>

// Declared in none of AppKit's headers.
@interface NSResponder (EditMenu)
- (void)undo:(id)sender;
- (void)redo:(id)sender;
@end

namespace menubar {
namespace {

using Lines = std::vector<std::string>;

constexpr unichar tab = '\t';
constexpr unichar backtab = 0x19;
constexpr unichar escape = 0x1B;
constexpr unichar enter = '\r';

class TextFieldInAWindow : public driver::ControlsInAWindow {
protected:
    MenubarTextField* field(ControlId shown) { return native<MenubarTextField>(shown); }

    void select(NSUInteger start, NSUInteger length) { [editor() setSelectedRange:NSMakeRange(start, length)]; }
};

TEST_F(TextFieldInAWindow, reportsEachKeystrokeWithTheWholeText) {
    const ControlId name = add(TextField{.text = "ab"});
    focus(name);
    EXPECT_EQ(m_events->takeLog(), Lines{"began 1"});
    select(2, 0);
    type("cd");
    EXPECT_EQ(m_events->takeLog(), (Lines{"text 1: abc", "text 1: abcd"}));
    key(NSDeleteCharacter);
    EXPECT_EQ(m_events->takeLog(), Lines{"text 1: abc"});
    [m_window.get() makeFirstResponder:nil];
    EXPECT_EQ(m_events->takeLog(), Lines{"ended 1"});
    EXPECT_EQ(shownText(name), "abc");
}

TEST_F(TextFieldInAWindow, tellsOfTheInsertionPointThoughNothingIsTyped) {
    const ControlId first = add(TextField{.text = "a"});
    const ControlId second = add(TextField{.text = "b"});
    focus(first);
    focus(second);
    [m_window.get() makeFirstResponder:nil];
    EXPECT_EQ(m_events->takeLog(), (Lines{"began 1", "ended 1", "began 2", "ended 2"}));
}

TEST_F(TextFieldInAWindow, tellsOfAClickIntoIt) {
    const ControlId name = add(TextField{.text = "a"});
    click(field(name));
    EXPECT_EQ(m_events->takeLog(), Lines{"began 1"});
    EXPECT_EQ(focused(), name);
}

TEST_F(TextFieldInAWindow, reportsNothingThatTheHostDoes) {
    const ControlId name = add(TextField{.text = "a"});
    update(name, TextField{.text = "b", .prompt = "p"}, TextField{.text = "a"});
    EXPECT_EQ(shownText(name), "b");
    focus(name);
    (void)m_events->takeLog();
    update(name, TextField{.text = "c", .prompt = "p"}, TextField{.text = "b", .prompt = "p"});
    EXPECT_EQ(toString([editor() string]), "c");
    host().place(name, {.x = 0, .y = 0, .width = 300, .height = 24});
    host().destroy(name);
    EXPECT_EQ(m_events->takeLog(), Lines{});
    EXPECT_EQ(editor(), nil);
}

TEST_F(TextFieldInAWindow, keepsFocusSelectionAndTextOverAHundredUpdatesElsewhere) {
    const ControlId name = add(TextField{.text = "hello"});
    const ControlId label = add(Text{.text = "0"});
    focus(name);
    select(1, 3);
    NSTextView* before = editor();
    for (int i = 0; i < 100; ++i) {
        update(label, Text{.text = std::to_string(i + 1)}, Text{.text = std::to_string(i)});
        host().place(name, {.x = 10.0, .y = 10.0 + i, .width = 200.0, .height = 24.0});
        host().arrange(windowContent, i % 2 == 0 ? std::vector{label, name} : std::vector{name, label});
        if (i % 25 == 0) {
            type("x");
        }
        ASSERT_EQ(focused(), name) << i;
        ASSERT_EQ(editor(), before) << i;
    }
    EXPECT_EQ(toString([editor() string]), "hxxxxo");
    EXPECT_EQ([editor() selectedRange].location, 5U);
    EXPECT_EQ(m_events->takeLog().size(), 5U) << "began, and four texts";
}

struct Replacement {
    const char* name;
    const char* before;
    NSRange selection;
    const char* now;
    NSRange expected;
};

TEST_F(TextFieldInAWindow, keepsTheInsertionPointAtItsTextWhenTheTextIsReplaced) {
    const std::vector<Replacement> cases = {
        {"before the change", "one two", {1, 0}, "one three", {1, 0}},
        {"after the change", "one two", {7, 0}, "three two", {9, 0}},
        {"selection after the change", "one two", {4, 3}, "three two", {6, 3}},
        {"inside the change", "abcdef", {3, 0}, "aXf", {2, 0}},
        {"everything selected stays so", "10", {0, 2}, "2000", {0, 4}},
        {"emptied", "abc", {2, 0}, "", {0, 0}},
        {"filled", "", {0, 0}, "abc", {0, 0}},
        {"a shorter number", "100", {3, 0}, "99", {2, 0}},
    };
    for (const Replacement& c : cases) {
        SCOPED_TRACE(c.name);
        const ControlId name = add(TextField{.text = c.before});
        focus(name);
        [editor() setSelectedRange:c.selection];
        update(name, TextField{.text = c.now}, TextField{.text = c.before});
        EXPECT_EQ(toString([editor() string]), c.now);
        EXPECT_EQ([editor() selectedRange].location, c.expected.location);
        EXPECT_EQ([editor() selectedRange].length, c.expected.length);
        EXPECT_EQ(focused(), name);
    }
}

TEST_F(TextFieldInAWindow, takesTheCommandsOfTheEditMenu) {
    const ControlId name = add(TextField{.text = "a"});
    const ControlId notes = add(TextEditor{.text = "a"});
    for (const ControlId shown : {name, notes}) {
        SCOPED_TRACE(shown);
        focus(shown);
        select(1, 0);
        type("b");
        const auto command = [](SEL selector) { return [NSApp sendAction:selector to:nil from:nil]; };
        EXPECT_TRUE(command(@selector(undo:)));
        EXPECT_EQ(toString([editor() string]), "a");
        EXPECT_TRUE(command(@selector(redo:)));
        EXPECT_EQ(toString([editor() string]), "ab");
        EXPECT_TRUE(command(@selector(selectAll:)));
        EXPECT_TRUE(command(@selector(cut:)));
        EXPECT_EQ(toString([editor() string]), "");
        EXPECT_TRUE(command(@selector(paste:)));
        EXPECT_TRUE(command(@selector(paste:)));
        EXPECT_EQ(toString([editor() string]), "abab");
        EXPECT_EQ(m_events->takeLog().back(), "text " + std::to_string(shown) + ": abab");
    }
}

TEST_F(TextFieldInAWindow, keepsItsUndoHistoryOverUpdatesThatLeaveItsText) {
    const ControlId name = add(TextField{.text = "a"});
    const ControlId label = add(Text{.text = "0"});
    focus(name);
    select(1, 0);
    type("b");
    update(name, TextField{.text = "ab", .prompt = "p"}, TextField{.text = "ab"});
    update(label, Text{.text = "1"}, Text{.text = "0"});
    [[editor() undoManager] undo];
    EXPECT_EQ(toString([editor() string]), "a");
}

TEST_F(TextFieldInAWindow, forgetsItsHistoryWithTheFocus) {
    const ControlId first = add(TextField{.text = "a"});
    const ControlId second = add(TextField{.text = "a longer text"});
    focus(first);
    select(1, 0);
    type("b");
    focus(second);
    EXPECT_FALSE([[editor() undoManager] canUndo]);
    focus(first);
    EXPECT_FALSE([[editor() undoManager] canUndo]);
}

TEST_F(TextFieldInAWindow, aReplacedTextCanBeUndone) {
    const ControlId name = add(TextField{.text = "1x"});
    focus(name);
    update(name, TextField{.text = "1"}, TextField{.text = "1x"});
    (void)m_events->takeLog();
    driver::pump(driver::milliseconds(5));
    [[editor() undoManager] undo];
    EXPECT_EQ(m_events->takeLog(), Lines{"text 1: 1x"});
}

TEST_F(TextFieldInAWindow, tabVisitsControlsInTheirOrderAndRoundAgain) {
    const ControlId first = add(TextField{.text = "a"});
    const ControlId second = add(TextField{.text = "b"});
    const ControlId third = add(TextEditor{.text = "c"});
    host().setTabOrder(std::vector{first, third, second});
    focus(first);
    key(tab);
    EXPECT_EQ(focused(), third);
    key(tab);
    EXPECT_EQ(focused(), second);
    key(tab);
    EXPECT_EQ(focused(), first);
    key(backtab, NSEventModifierFlagShift);
    EXPECT_EQ(focused(), second);
    key(backtab, NSEventModifierFlagShift);
    EXPECT_EQ(focused(), third);
    key(backtab, NSEventModifierFlagShift);
    EXPECT_EQ(focused(), first);
    EXPECT_EQ(shownText(third), "c") << "Tab is not typed";
}

TEST_F(TextFieldInAWindow, returnEndsWhatWasTypedAndSelectsAll) {
    const ControlId name = add(TextField{.text = "5"});
    focus(name);
    select(1, 0);
    type("x");
    (void)m_events->takeLog();
    bool hasEnded = false;
    m_events->onEvent = [&] {
        if (!hasEnded && m_events->log.back() == "ended 1") {
            hasEnded = true;
            update(name, TextField{.text = "5"}, TextField{.text = "5x"}); // no number: put back
        }
    };
    key(enter);
    EXPECT_EQ(m_events->takeLog(), (Lines{"ended 1", "began 1"}));
    EXPECT_EQ(toString([editor() string]), "5");
    EXPECT_EQ([editor() selectedRange].length, 1U);
    EXPECT_EQ(focused(), name);
}

TEST_F(TextFieldInAWindow, shortcutsOfButtonsWorkWhileOneTypes) {
    (void)add(Button{.title = "Cancel", .shortcut = KeyShortcut::cancelAction});
    (void)add(Button{.title = "Save", .shortcut = KeyShortcut::commandS});
    const ControlId name = add(TextField{.text = "a"});
    const ControlId editorField = add(TextEditor{.text = "b"});
    for (const ControlId shown : {name, editorField}) {
        SCOPED_TRACE(shown);
        focus(shown);
        (void)m_events->takeLog();
        key(escape);
        EXPECT_EQ(m_events->takeLog(), Lines{"pressed 1"});
        key('s', NSEventModifierFlagCommand);
        EXPECT_EQ(m_events->takeLog(), Lines{"pressed 2"});
        EXPECT_EQ(focused(), shown);
    }
    EXPECT_EQ(shownText(name), "a");
    EXPECT_EQ(shownText(editorField), "b");
}

TEST_F(TextFieldInAWindow, returnPressesTheDefaultButton) {
    (void)add(Button{.title = "OK", .shortcut = KeyShortcut::defaultAction});
    const ControlId name = add(TextField{.text = "a"});
    focus(name);
    (void)m_events->takeLog();
    key(enter);
    EXPECT_EQ(m_events->takeLog(), Lines{"pressed 1"});
}

TEST_F(TextFieldInAWindow, aCommandThatNobodyTakesIsNotTyped) {
    (void)add(Button{.title = "Save", .shortcut = KeyShortcut::commandS, .enabled = false});
    const ControlId name = add(TextField{.text = "a"});
    const ControlId editorField = add(TextEditor{.text = "b"});
    focus(name);
    key('s', NSEventModifierFlagCommand);
    key('k', NSEventModifierFlagCommand);
    EXPECT_EQ(shownText(name), "a");
    focus(editorField);
    key('s', NSEventModifierFlagCommand);
    EXPECT_EQ(shownText(editorField), "b");
}

TEST_F(TextFieldInAWindow, escapeWithoutATakerDoesNothing) {
    const ControlId name = add(TextField{.text = "alpha al"});
    focus(name);
    select(8, 0);
    (void)m_events->takeLog();
    key(escape);
    EXPECT_EQ(m_events->takeLog(), Lines{});
    EXPECT_EQ(toString([editor() string]), "alpha al");
}

TEST_F(TextFieldInAWindow, mayBeDestroyedByTheTextItReports) {
    const ControlId name = add(TextField{.text = "a"});
    focus(name);
    select(1, 0);
    m_events->onEvent = [&] {
        if (m_events->log.back() == "text 1: ab") {
            host().destroy(name);
        }
    };
    type("b");
    EXPECT_EQ(m_events->takeLog(), (Lines{"began 1", "text 1: ab"}));
    EXPECT_EQ(host().nativeView(name), nil);
    type("c");
    EXPECT_EQ(m_events->takeLog(), Lines{});
}

TEST_F(TextFieldInAWindow, theHostMayGoInTheCourseOfAnEvent) {
    const ControlId name = add(TextField{.text = "a"});
    focus(name);
    select(1, 0);
    m_events->onEvent = [&] { m_host.reset(); };
    type("b");
    EXPECT_EQ(m_events->takeLog(), (Lines{"began 1", "text 1: ab"}));
    EXPECT_EQ([[m_content.get() subviews] count], 0U);
}

TEST_F(TextFieldInAWindow, disabledTakesNoFocus) {
    const ControlId name = add(TextField{.text = "a", .enabled = false});
    click(field(name));
    EXPECT_EQ(focused(), windowContent);
    EXPECT_EQ(m_events->takeLog(), Lines{});
    update(name, TextField{.text = "a"}, TextField{.text = "a", .enabled = false});
    click(field(name));
    EXPECT_EQ(focused(), name);
}

TEST_F(TextFieldInAWindow, keepsTextFromOutsideAsItIs) {
    const std::string text = "\"q\" -- ü 😀 e\xCC\x81";
    const ControlId name = add(TextField{.text = text});
    EXPECT_EQ(shownText(name), text);
    focus(name);
    select([[editor() string] length], 0);
    type("\"--");
    EXPECT_EQ(m_events->takeLog().back(), "text 1: " + text + "\"--");
}

} // namespace
} // namespace menubar
