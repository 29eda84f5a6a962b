// The whole settings window on real widgets: what a person sees and does there, and what becomes of the config file.

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/AppKit/MenuRenderer.h"
#include "MenubarApp/AppKit/ObjCPointer.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/SettingsScreen.h"
#include "tests/appkit/WindowDriver.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// Answers the main menu's `show:`.
@interface ShowCounter : NSObject {
    int _shows;
}
- (void)show:(id)sender;
- (int)shows;
@end

@implementation ShowCounter

- (void)show:(id)sender {
    ++_shows;
}

- (int)shows {
    return _shows;
}

@end

namespace menubar {
namespace {

using driver::alertButtons;
using driver::clickAlertButton;
using driver::pressKey;
using driver::pump;
using driver::pumpUntil;
using driver::SettingsScreen;
using driver::typeKeys;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr NSUInteger command = NSEventModifierFlagCommand;

class SettingsWindowTest : public testing::Test {
protected:
    void open() {
        m_screen.open();
        ASSERT_TRUE(m_screen.waitToShow("First group")) << "not loaded";
    }

    /// Saves what was edited and waits until it is in the file.
    void save() {
        m_screen.press("Save");
        ASSERT_TRUE(m_screen.waitToShow("Saved at ")) << m_screen.config();
    }

    [[nodiscard]] NSWindow* window() const { return m_screen.window(); }

    [[nodiscard]] bool canSave() const { return [m_screen.button("Save") isEnabled] != NO; }

    SettingsScreen m_screen;
};

// What is shown

TEST_F(SettingsWindowTest, showsEveryGroupAndSettingAndWhereTheFileWillBe) {
    open();
    for (const char* text : {"First group", "Second group", "Text", "Number", "Wait", "Switch", "Words", "Level",
                             "Members", "File", "Story", "Odd", "Last", "No config file yet; defaults shown.",
                             "This app does not know the control kind dial", "Some text.", "Default: d"}) {
        EXPECT_TRUE(m_screen.shows(text)) << text;
    }
    EXPECT_EQ(toString([window() title]), "ostrel Settings");
    EXPECT_FALSE(canSave());
}

TEST_F(SettingsWindowTest, aFailureCanBeReadCopiedAndTriedAgain) {
    m_screen.setSchemaStatus(2);
    m_screen.open();
    ASSERT_TRUE(m_screen.waitToShow("Could not load the settings schema"));
    NSTextField* detail = m_screen.label("/opt/ostrel config schema\nexit status 2");
    ASSERT_NE(detail, nil);
    EXPECT_TRUE([detail isSelectable]);
    EXPECT_FALSE(canSave());
    m_screen.setSchemaStatus(0);
    m_screen.press("Try again");
    EXPECT_TRUE(m_screen.waitToShow("First group"));
    EXPECT_FALSE(m_screen.shows("Could not load the settings schema"));
}

// Every kind of control, into the file

TEST_F(SettingsWindowTest, aTextIsTakenKeyByKey) {
    open();
    m_screen.focus(m_screen.field("Text"));
    typeKeys(window(), "n");
    m_screen.settle();
    EXPECT_TRUE(m_screen.shows("edited"));
    EXPECT_TRUE(canSave());
    typeKeys(window(), "ew");
    save();
    EXPECT_EQ(m_screen.config(), "{\n  \"text\" : \"new\"\n}\n");
    EXPECT_FALSE(m_screen.shows("edited"));
    EXPECT_FALSE(canSave());
}

TEST_F(SettingsWindowTest, aTextThatIsNoNumberYetLeavesTheValueAndIsPutBackWhenEditingEnds) {
    m_screen.writeConfig(R"({"number":7})");
    open();
    m_screen.type("Text", "new");
    m_screen.type("Number", "1,5");
    EXPECT_FALSE(canSave());
    EXPECT_TRUE(m_screen.shows("Must be a number"));
    EXPECT_EQ(toString([m_screen.editor() string]), "1,5");
    [window() makeFirstResponder:m_screen.field("Text")];
    m_screen.settle();
    EXPECT_EQ(m_screen.text("Number"), "7");
    EXPECT_FALSE(m_screen.shows("Must be a number"));
    EXPECT_TRUE(canSave());
}

TEST_F(SettingsWindowTest, anErrorAppearsUnderItsRowWhileOneTypes) {
    open();
    m_screen.type("Number", "70");
    EXPECT_TRUE(m_screen.shows("Must be between 1 and 10"));
    EXPECT_FALSE(canSave());
    m_screen.type("Number", "7");
    EXPECT_FALSE(m_screen.shows("Must be between 1 and 10"));
    save();
    EXPECT_EQ(m_screen.config(), "{\n  \"number\" : 7\n}\n");
}

TEST_F(SettingsWindowTest, anErrorThatAppearsAtTheLowerEdgeIsScrolledIntoSight) {
    open();
    [window() setContentSize:NSMakeSize(520, 300)];
    m_screen.settle();
    m_screen.focus(m_screen.field("Number")); // as little as needed: it stands at the edge
    m_screen.type("Number", "70");
    EXPECT_TRUE(m_screen.isInSight("Must be between 1 and 10"));
}

TEST_F(SettingsWindowTest, aBannerThatAppearsLeavesTheEditedFieldWhereItIs) {
    m_screen.writeConfig(R"({"number":7})");
    open();
    [window() setContentSize:NSMakeSize(520, 420)];
    m_screen.type("Number", "8");
    NSTextField* field = m_screen.field("Number");
    const NSRect before = [field convertRect:[field bounds] toView:nil];
    m_screen.writeConfig(R"({"number":9})");
    m_screen.poll(nullptr);
    ASSERT_TRUE(m_screen.waitToShow("Another program has changed the config file"));
    EXPECT_TRUE(NSEqualRects([field convertRect:[field bounds] toView:nil], before));
    m_screen.press("Reload");
    ASSERT_TRUE(pumpUntil([&] { return m_screen.text("Number") == "9"; }));
}

TEST_F(SettingsWindowTest, addPutsTheInsertionPointIntoTheNewItem) {
    open();
    m_screen.pressNear("Words", "Add");
    typeKeys(window(), "one");
    m_screen.settle();
    m_screen.pressNear("Words", "Add");
    typeKeys(window(), "two");
    save();
    EXPECT_EQ(m_screen.config(), "{\n  \"words\" : [\n    \"one\",\n    \"two\"\n  ]\n}\n");
}

TEST_F(SettingsWindowTest, aStepperStepsNumbersAndDurations) {
    m_screen.writeConfig(R"({"number":9,"wait":"10m"})");
    open();
    for (const char* setting : {"Number", "Wait"}) {
        NSStepper* stepper = static_cast<NSStepper*>(m_screen.control(setting, [NSStepper class]));
        ASSERT_NE(stepper, nil);
        [stepper setDoubleValue:1.0];
        [stepper sendAction:[stepper action] to:[stepper target]];
        m_screen.settle();
    }
    EXPECT_EQ(m_screen.text("Number"), "10");
    EXPECT_EQ(m_screen.text("Wait"), "11m");
    save();
    EXPECT_EQ(m_screen.config(), "{\n  \"number\" : 10,\n  \"wait\" : \"11m\"\n}\n");
}

TEST_F(SettingsWindowTest, switchesPopUpsAndCheckboxesAreTakenAtOnce) {
    open();
    NSSwitch* toggle = static_cast<NSSwitch*>(m_screen.control("Switch", [NSSwitch class]));
    ASSERT_NE(toggle, nil);
    [toggle setState:NSControlStateValueOn];
    [toggle sendAction:[toggle action] to:[toggle target]];
    NSPopUpButton* picker = static_cast<NSPopUpButton*>(m_screen.control("Level", [NSPopUpButton class]));
    ASSERT_NE(picker, nil);
    [window() makeFirstResponder:picker]; // it comes into sight
    m_screen.settle();
    [[picker menu] performActionForItemAtIndex:2];
    m_screen.pressNear("Members", "green");
    m_screen.settle();
    save();
    EXPECT_EQ(m_screen.config(),
              "{\n  \"level\" : \"high\",\n  \"members\" : [\n    \"green\"\n  ],\n  \"switch\" : true\n}\n");
}

TEST_F(SettingsWindowTest, listItemsAreAddedTypedAndRemoved) {
    open();
    EXPECT_TRUE(m_screen.shows("Empty"));
    m_screen.pressNear("Words", "Add");
    m_screen.pressNear("Words", "Add");
    m_screen.pressNear("Words", "Add");
    EXPECT_FALSE(m_screen.shows("Empty"));
    for (const auto& [index, word] : std::vector<std::pair<std::size_t, std::string>>{{0, "a"}, {1, "b"}, {2, "c"}}) {
        ASSERT_EQ(m_screen.fields("Words").size(), 3U);
        m_screen.focus(m_screen.fields("Words")[index]);
        typeKeys(window(), word);
        m_screen.settle();
    }
    std::vector<NSButton*> removers;
    for (NSTextField* field : m_screen.fields("Words")) {
        for (NSView* sibling in [[field superview] subviews]) {
            const CGFloat distance = NSMidY([sibling frame]) - NSMidY([field frame]);
            if ([sibling isKindOfClass:[NSButton class]] && distance < 3.0 && distance > -3.0) {
                removers.push_back(static_cast<NSButton*>(sibling));
            }
        }
    }
    ASSERT_EQ(removers.size(), 3U);
    [removers[1] performClick:nil];
    m_screen.settle();
    EXPECT_EQ(m_screen.fields("Words").size(), 2U);
    save();
    EXPECT_EQ(m_screen.config(), "{\n  \"words\" : [\n    \"a\",\n    \"c\"\n  ]\n}\n");
}

TEST_F(SettingsWindowTest, linesOfTextAndRawValuesAreTakenToo) {
    open();
    NSTextView* story = static_cast<NSTextView*>(m_screen.control("Story", [NSTextView class]));
    ASSERT_NE(story, nil);
    m_screen.focus(story);
    typeKeys(window(), "one\rtwo");
    m_screen.type("Odd", "[1]");
    save();
    EXPECT_EQ(m_screen.config(), "{\n  \"odd\" : [\n    1\n  ],\n  \"story\" : \"one\\ntwo\"\n}\n");
}

// Saving

TEST_F(SettingsWindowTest, aRejectedSaveShowsWhatIsWrongWhereItIsAndCanBePutRight) {
    open();
    [window() setFrame:NSMakeRect(50, 50, 520, 420) display:YES];
    m_screen.type("Text", "new");
    m_screen.type("Last", "bad");
    m_screen.focus(m_screen.field("Text")); // and back to the top
    m_screen.settle();
    ASSERT_FALSE(m_screen.isInSight("Last"));
    m_screen.setVerdict(
        1, R"({"ok":false,"errors":[{"options":["last"],"message":"not like this"},{"message":"nor so"}]})");
    m_screen.press("Save");
    ASSERT_TRUE(m_screen.waitToShow("The daemon rejected the file; see last."));
    EXPECT_TRUE(m_screen.isInSight("not like this"));
    EXPECT_TRUE(m_screen.shows("nor so"));
    EXPECT_EQ(m_screen.config(), "");
    m_screen.setVerdict(0, R"({"ok":true})");
    m_screen.type("Last", "good");
    EXPECT_FALSE(m_screen.shows("not like this"));
    save();
    EXPECT_FALSE(m_screen.shows("nor so"));
    EXPECT_EQ(m_screen.config(), "{\n  \"last\" : \"good\",\n  \"text\" : \"new\"\n}\n");
}

// Keys

TEST_F(SettingsWindowTest, commandSSavesFromWithinAField) {
    open();
    m_screen.type("Text", "new");
    pressKey(window(), @"s", command);
    EXPECT_TRUE(m_screen.waitToShow("Saved at "));
    EXPECT_EQ(m_screen.config(), "{\n  \"text\" : \"new\"\n}\n");
}

TEST_F(SettingsWindowTest, escapeClosesFromWithinAField) {
    open();
    m_screen.type("Text", "new");
    pressKey(window(), @"\033");
    m_screen.settle();
    EXPECT_FALSE(m_screen.isOpen());
    EXPECT_EQ(m_screen.config(), "");
}

TEST_F(SettingsWindowTest, tabFollowsTheRows) {
    open();
    m_screen.focus(m_screen.field("Text"));
    std::vector<CGFloat> heights;
    for (int i = 0; i < 6; ++i) {
        NSResponder* responder = [window() firstResponder];
        if (NSTextView* text = m_screen.editor(); text != nil && [text isFieldEditor]) {
            responder = static_cast<NSResponder*>([text delegate]);
        }
        ASSERT_TRUE([responder isKindOfClass:[NSView class]]);
        NSView* view = static_cast<NSView*>(responder);
        heights.push_back(NSMidY([view convertRect:[view bounds] toView:[m_screen.label("Text") superview]]));
        pressKey(window(), @"\t");
        m_screen.settle();
    }
    EXPECT_TRUE(std::ranges::is_sorted(heights)) << testing::PrintToString(heights);
    EXPECT_GT(heights.back(), heights.front());
}

class MainMenuKeysTest : public SettingsWindowTest {
protected:
    MainMenuKeysTest() {
        m_shows = ObjCPointer<ShowCounter>::adopt([[ShowCounter alloc] init]);
        installMainMenu(m_shows.get());
    }

    ~MainMenuKeysTest() override { [NSApp setMainMenu:nil]; }

    MainMenuKeysTest(const MainMenuKeysTest&) = delete;
    MainMenuKeysTest& operator=(const MainMenuKeysTest&) = delete;

    [[nodiscard]] std::string typed() const { return toString([m_screen.editor() string]); }

    ObjCPointer<ShowCounter> m_shows;
};

TEST_F(MainMenuKeysTest, selectAllCutCopyAndPasteWorkInAField) {
    open();
    m_screen.type("Text", "words");
    pressKey(window(), @"a", command);
    pressKey(window(), @"c", command);
    EXPECT_EQ(typed(), "words");
    pressKey(window(), @"x", command);
    EXPECT_EQ(typed(), "");
    pressKey(window(), @"v", command);
    pressKey(window(), @"v", command);
    EXPECT_EQ(typed(), "wordswords");
    m_screen.settle();
    save();
    EXPECT_EQ(m_screen.config(), "{\n  \"text\" : \"wordswords\"\n}\n");
}

TEST_F(MainMenuKeysTest, undoAndRedoWorkInAFieldAndInLinesOfText) {
    open();
    for (NSView* place :
         {static_cast<NSView*>(m_screen.field("Text")), m_screen.control("Story", [NSTextView class])}) {
        ASSERT_NE(place, nil);
        m_screen.focus(place);
        typeKeys(window(), "new");
        m_screen.settle();
        const std::string before = typed();
        pressKey(window(), @"z", command);
        const std::string undone = typed();
        EXPECT_NE(undone, before);
        pressKey(window(), @"Z", command | NSEventModifierFlagShift);
        EXPECT_EQ(typed(), before);
        m_screen.settle();
    }
    EXPECT_EQ(m_screen.model().form()->field("text")->value, SettingValue("new"));
}

TEST_F(MainMenuKeysTest, theMenuTakesNoRoomInTheWindow) {
    open();
    [window() resignKeyWindow];
    [window() makeKeyAndOrderFront:nil];
    m_screen.settle();
    EXPECT_EQ(NSHeight([[window() contentView] frame]), 760.0);
    EXPECT_EQ(NSWidth([[window() contentView] frame]), 680.0);
}

TEST_F(MainMenuKeysTest, commandWClosesAndCommandCommaShows) {
    open();
    m_screen.focus(m_screen.field("Text"));
    pressKey(window(), @",", command);
    EXPECT_EQ([m_shows.get() shows], 1);
    pressKey(window(), @"w", command);
    m_screen.settle();
    EXPECT_FALSE(m_screen.isOpen());
}

// What changes around a person who types

TEST_F(SettingsWindowTest, aHundredChangesOfTheModelLeaveTheFocusTheSelectionAndTheScrolling) {
    open();
    [window() setFrame:NSMakeRect(50, 50, 520, 420) display:YES];
    NSTextField* field = m_screen.field("Last");
    m_screen.focus(field);
    m_screen.settle();
    NSScrollView* scroller = [field enclosingScrollView];
    std::string expected;
    for (int i = 0; i < 100; ++i) {
        const std::string letter(1, static_cast<char>('a' + i % 26));
        typeKeys(window(), letter);
        expected += letter;
        const NSPoint origin = [scroller documentVisibleRect].origin;
        const StatusFile status{
            .config = OstrelConfig{.settings = JSONValue::Object{{"number", JSONValue(std::to_string(i))}}}};
        m_screen.poll(&status);
        pump(std::chrono::milliseconds(2));
        ASSERT_EQ(m_screen.field("Last"), field);
        ASSERT_NE(m_screen.editor(), nil) << i;
        ASSERT_EQ([m_screen.editor() selectedRange].location, expected.size()) << i;
        if (i > 0) { // the first change adds a line above
            ASSERT_EQ([scroller documentVisibleRect].origin.y, origin.y) << i;
        }
    }
    EXPECT_EQ(toString([m_screen.editor() string]), expected);
    EXPECT_EQ(m_screen.model().form()->field("last")->value, SettingValue(expected));
}

TEST_F(SettingsWindowTest, followsItsWidthFromNarrowToWide) {
    open();
    for (const NSSize size : {NSMakeSize(520, 420), NSMakeSize(1600, 1000), NSMakeSize(680, 760)}) {
        [window() setFrame:NSMakeRect(0, 0, size.width, size.height) display:YES];
        m_screen.settle();
        NSView* content = [window() contentView];
        for (const char* title : {"Cancel", "Restart daemon", "Save"}) {
            NSButton* button = m_screen.button(title);
            EXPECT_TRUE(NSContainsRect([content bounds], [button convertRect:[button bounds] toView:content])) << title;
        }
        NSButton* save = m_screen.button("Save");
        EXPECT_NEAR(NSMaxX([save convertRect:[save bounds] toView:content]), NSWidth([content bounds]) - 20.0, 4.0);
        NSTextField* field = m_screen.field("Text");
        EXPECT_NEAR(NSWidth([field frame]), NSWidth([content bounds]) - 64.0, 16.0);
    }
}

TEST_F(SettingsWindowTest, openingAndClosingTwoHundredTimesLeavesNothingBehind) {
    m_screen.setSchema(R"({"x-groups": [{"id": "one", "title": "First group", "settings": [
        {"name": "text", "control": "text"}, {"name": "number", "control": "number"}]}]})");
    const auto openAndClose = [this] {
        @autoreleasepool {
            open();
            pressKey(window(), @"\033");
            m_screen.settle();
            ASSERT_FALSE(m_screen.isOpen());
        }
    };
    open();
    Class windowClass = [window() class];
    const auto counts = [windowClass] {
        std::vector<int> result;
        for (Class type : {windowClass, [NSTextField class], [NSScrollView class], [NSStepper class]}) {
            result.push_back(driver::liveObjects(type));
        }
        return result;
    };
    (void)counts(); // from here on they are counted
    for (int i = 0; i < 20; ++i) {
        openAndClose();
    }
    const auto before = counts();
    const std::size_t bytes = driver::residentBytes();
    for (int i = 0; i < 200; ++i) {
        openAndClose();
    }
    EXPECT_EQ(counts(), before);
    if (driver::isMemoryMeasurable) {
        EXPECT_LT(driver::residentBytes(), bytes + 16 * 1024 * 1024);
    }
}

} // namespace
} // namespace menubar
