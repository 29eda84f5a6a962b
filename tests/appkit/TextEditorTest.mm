#import "tests/appkit/ViewHostFixture.h"

#import "MenubarApp/AppKit/Controls/TextEditor.h"

#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"

#include <chrono>
#include <string>
#include <vector>

namespace menubar {
namespace {

using Lines = std::vector<std::string>;

class TextEditorInAWindow : public driver::ControlsInAWindow {
protected:
    MenubarTextEditor* text(ControlId shown) { return static_cast<MenubarTextEditor*>(host().keyView(shown)); }

    void select(NSUInteger start, NSUInteger length) { [editor() setSelectedRange:NSMakeRange(start, length)]; }
};

TEST_F(TextEditorInAWindow, reportsEachKeystrokeAndTakesLineFeeds) {
    const ControlId notes = add(TextEditor{.text = "a\nb"});
    focus(notes);
    select(3, 0);
    type("c\r");
    EXPECT_EQ(m_events->takeLog(), (Lines{"began 1", "text 1: a\nbc", "text 1: a\nbc\n"}));
    [m_window.get() makeFirstResponder:nil];
    EXPECT_EQ(m_events->takeLog(), Lines{"ended 1"});
}

TEST_F(TextEditorInAWindow, reportsNothingThatTheHostDoes) {
    const ControlId notes = add(TextEditor{.text = "a"});
    update(notes, TextEditor{.text = "b"}, TextEditor{.text = "a"});
    EXPECT_EQ(shownText(notes), "b");
    focus(notes);
    (void)m_events->takeLog();
    update(notes, TextEditor{.text = "c"}, TextEditor{.text = "b"});
    EXPECT_EQ(shownText(notes), "c");
    host().destroy(notes);
    EXPECT_EQ(m_events->takeLog(), Lines{});
}

TEST_F(TextEditorInAWindow, keepsTheInsertionPointAtItsTextWhenTheTextIsReplaced) {
    const ControlId notes = add(TextEditor{.text = "first\nsecond"});
    focus(notes);
    select(12, 0);
    update(notes, TextEditor{.text = "the first\nsecond"}, TextEditor{.text = "first\nsecond"});
    EXPECT_EQ([editor() selectedRange].location, 16U);
    EXPECT_EQ(shownText(notes), "the first\nsecond");
}

TEST_F(TextEditorInAWindow, undoesAndRedoesWhatWasTypedAlsoAfterTheFocusWasElsewhere) {
    const ControlId notes = add(TextEditor{.text = "a"});
    const ControlId name = add(TextField{.text = "b"});
    focus(notes);
    select(1, 0);
    type("x");
    focus(name);
    focus(notes);
    (void)m_events->takeLog();
    [[editor() undoManager] undo];
    EXPECT_EQ(m_events->takeLog(), Lines{"text 1: a"});
    [[editor() undoManager] redo];
    EXPECT_EQ(m_events->takeLog(), Lines{"text 1: ax"});
}

TEST_F(TextEditorInAWindow, aTextReplacedBehindItsBackCannotBeUndoneInto) {
    const ControlId notes = add(TextEditor{.text = "a"});
    focus(notes);
    select(1, 0);
    type("x");
    [m_window.get() makeFirstResponder:nil];
    update(notes, TextEditor{.text = ""}, TextEditor{.text = "ax"});
    focus(notes);
    EXPECT_FALSE([[editor() undoManager] canUndo]);
}

TEST_F(TextEditorInAWindow, composedTextIsNoChangeUntilItIsCommitted) {
    const ControlId notes = add(TextEditor{.text = "a"});
    const ControlId name = add(TextField{.text = "a"});
    for (const ControlId shown : {notes, name}) {
        focus(shown);
        select(1, 0);
        (void)m_events->takeLog();
        [editor() setMarkedText:@"k" selectedRange:NSMakeRange(1, 0)];
        if (![editor() hasMarkedText]) {
            GTEST_SKIP() << "this toolkit has no input methods";
        }
        EXPECT_EQ(m_events->takeLog(), Lines{});
        host().commitEditing();
        EXPECT_EQ(m_events->takeLog(), Lines{shown == notes ? "text 1: ak" : "text 2: ak"});
        EXPECT_FALSE([editor() hasMarkedText]);
        EXPECT_EQ(focused(), shown);
    }
    // GNUstep's own unmarkText complains about itself.
    for (const std::string& line : driver::takeLoggedLines()) {
        EXPECT_NE(line.find("Attempt to set attribute for zero-length range"), std::string::npos) << line;
    }
}

TEST_F(TextEditorInAWindow, committingWithNothingPendingReportsNothing) {
    const ControlId notes = add(TextEditor{.text = "a"});
    const ControlId name = add(TextField{.text = "b"});
    for (const ControlId shown : {notes, name}) {
        focus(shown);
        type("x");
        (void)m_events->takeLog();
        host().commitEditing();
        EXPECT_EQ(m_events->takeLog(), Lines{});
        EXPECT_EQ(focused(), shown);
    }
}

TEST_F(TextEditorInAWindow, takesPlainTextOnly) {
    const ControlId notes = add(TextEditor{});
    EXPECT_FALSE([text(notes) isRichText]);
    EXPECT_FALSE([text(notes) importsGraphics]);
    EXPECT_FALSE([text(notes) isContinuousSpellCheckingEnabled]);
}

TEST_F(TextEditorInAWindow, disabledIsReadOnly) {
    const ControlId notes = add(TextEditor{.text = "a", .enabled = false});
    EXPECT_FALSE([text(notes) isEditable]);
    update(notes, TextEditor{.text = "a"}, TextEditor{.text = "a", .enabled = false});
    EXPECT_TRUE([text(notes) isEditable]);
}

TEST_F(TextEditorInAWindow, wrapsWithinItsWidthAndNeverScrollsSideways) {
    const ControlId notes = add(TextEditor{.text = std::string(500, 'x')});
    for (const double width : {400.0, 200.0, 500.0}) {
        host().place(notes, {.x = 0, .y = 0, .width = width, .height = 96});
        driver::pump(driver::milliseconds(5));
        EXPECT_LE(NSWidth([text(notes) frame]), width);
        EXPECT_GT(NSWidth([text(notes) frame]), width - 20);
        EXPECT_FALSE([native<NSScrollView>(notes) hasHorizontalScroller]);
    }
}

TEST_F(TextEditorInAWindow, tenThousandLinesCanBeTypedInto) {
    std::string lines;
    for (int i = 0; i < 10'000; ++i) {
        lines += "line " + std::to_string(i) + "\n";
    }
    const ControlId notes = add(TextEditor{.text = lines});
    host().place(notes, {.x = 0, .y = 0, .width = 400, .height = 96});
    focus(notes);
    select(0, 0);
    driver::pump(driver::milliseconds(10));
    const auto start = std::chrono::steady_clock::now();
    type("abcdefgh");
    const auto taken = std::chrono::steady_clock::now() - start;
    RecordProperty("millisecondsPerKey", std::to_string(std::chrono::duration<double, std::milli>(taken).count() / 8));
    ASSERT_EQ(m_events->log.size(), 9U);
    EXPECT_EQ(m_events->log.back(), "text 1: abcdefgh" + lines);
}

} // namespace
} // namespace menubar
