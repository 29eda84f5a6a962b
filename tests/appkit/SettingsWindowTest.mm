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
    for (const char* word : {"a", "b", "c"}) {
        m_screen.pressNear("Words", "Add");
        typeKeys(window(), word); // the insertion point is in the new item
        m_screen.settle();
    }
    EXPECT_FALSE(m_screen.shows("Empty"));
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

} // namespace
} // namespace menubar
