// What macOS does by itself in a window and the stand-in platform has to do: tooltips, the wheel, the sheet's shade.
#import "tests/appkit/Eyes.h"
#import "tests/appkit/SettingsScreen.h"

#import "compat/gnustep/look/Hint.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/AppKit/MenuRenderer.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/WindowDriver.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

namespace menubar {
namespace {

class SettingsOnTheDesktop : public testing::Test {
protected:
    void open() {
        m_screen.installDaemon();
        m_screen.setSchema(R"({"properties": {"note": {"default": "d"}},
            "x-groups": [{"id": "one", "title": "Group", "settings": [
                {"name": "note", "control": "text", "requiredPrefix": "ostrel: "},
                {"name": "words", "control": "list"},
                {"name": "story", "control": "text", "multiline": true},
                {"name": "a", "control": "toggle"}, {"name": "b", "control": "toggle"},
                {"name": "c", "control": "toggle"}, {"name": "d", "control": "toggle"},
                {"name": "e", "control": "toggle"}, {"name": "f", "control": "toggle"},
                {"name": "g", "control": "toggle"}, {"name": "h", "control": "toggle"}]}]})");
        m_screen.writeConfig(R"({"note":"ostrel: x","words":["a"]})");
        m_screen.open();
        m_screen.poll(nullptr);
        ASSERT_TRUE(m_screen.waitToShow("Note"));
    }

    void post(NSEventType type, NSPoint place, double notches = 0.0) {
        [NSApp postEvent:[NSEvent mouseEventWithType:type
                                            location:place
                                       modifierFlags:0
                                           timestamp:0
                                        windowNumber:[window() windowNumber]
                                             context:nil
                                         eventNumber:0
                                          clickCount:0
                                            pressure:0
                                        buttonNumber:0
                                              deltaX:0
                                              deltaY:notches
                                              deltaZ:0]
                 atStart:NO];
        driver::handleWaitingEvents();
    }

    static NSPoint middleOf(NSView* view) {
        const NSRect place = driver::placeInPicture(view);
        return NSMakePoint(NSMidX(place), NSMidY(place));
    }

    /// The tooltip that comes when the pointer rests there; empty when none does.
    std::string helpAt(NSView* view) {
        if (view == nil) {
            return "(no such view)";
        }
        post(NSEventTypeMouseMoved, middleOf(view));
        (void)driver::pumpUntil([] { return [[Hint shared] text] != nil; });
        const std::string help = toString([[Hint shared] text]);
        post(NSEventTypeMouseMoved, NSMakePoint(2, 2));
        EXPECT_EQ([[Hint shared] text], nil) << "it goes with the pointer";
        return help;
    }

    [[nodiscard]] NSWindow* window() const { return m_screen.window(); }

    driver::SettingsScreen m_screen;
};

TEST_F(SettingsOnTheDesktop, helpShowsWhereThePointerRests) {
    open();
    EXPECT_EQ(helpAt(m_screen.button("Reset to default")), "Remove the key from the file; the daemon then uses d");
    EXPECT_EQ(helpAt(m_screen.label("ostrel: ")), "Every message starts with this prefix; it is added for you.");
    EXPECT_EQ(helpAt(m_screen.button("Restart daemon")),
              "Run launchctl kickstart on the daemon so it reads the config file again");
    EXPECT_EQ(helpAt(m_screen.button("Save")), "Validate through the daemon and write the config file (Cmd-S)");
    for (NSView* view in [[m_screen.field("Words") superview] subviews]) {
        if ([[view toolTip] isEqualToString:@"Remove this item"]) {
            EXPECT_EQ(helpAt(view), "Remove this item");
            return;
        }
    }
    ADD_FAILURE() << "nothing to remove an item with";
}

TEST_F(SettingsOnTheDesktop, helpGoesWithTheFirstPress) {
    open();
    post(NSEventTypeMouseMoved, middleOf(m_screen.button("Reset to default")));
    ASSERT_TRUE(driver::pumpUntil([] { return [[Hint shared] text] != nil; }));
    post(NSEventTypeLeftMouseDown, middleOf(m_screen.label("Note")));
    EXPECT_EQ([[Hint shared] text], nil) << "what it is about may be gone by the next look";
}

TEST_F(SettingsOnTheDesktop, theWheelScrollsTheFormAlsoOverAnEditorThatCannot) {
    open();
    [window() setFrame:NSMakeRect(50, 50, 520, 420) display:YES];
    m_screen.settle();
    auto* story = static_cast<NSTextView*>(m_screen.control("Story", [NSTextView class]));
    ASSERT_NE(story, nil);
    m_screen.focus(story); // brings it into sight
    m_screen.settle();
    NSClipView* form = [[[story enclosingScrollView] enclosingScrollView] contentView];
    [form scrollToPoint:NSMakePoint(0, std::floor(NSMinY([form documentVisibleRect])))];
    const auto top = [form] { return NSMinY([form documentVisibleRect]); };
    const CGFloat before = top();
    post(NSScrollWheel, middleOf(story), -1.0);
    EXPECT_EQ(top() - before, 40.0);
    post(NSScrollWheel, middleOf(story), 1.0);
    EXPECT_EQ(top(), before);
    // What can scroll does.
    m_screen.focus(story);
    for (int line = 0; line < 20; ++line) {
        driver::typeKeys(window(), "x\r");
    }
    m_screen.settle();
    NSClipView* text = [[story enclosingScrollView] contentView];
    const CGFloat lowest = NSMinY([text documentVisibleRect]);
    const CGFloat here = top();
    post(NSScrollWheel, middleOf([story enclosingScrollView]), 1.0);
    EXPECT_EQ(lowest - NSMinY([text documentVisibleRect]), 40.0);
    EXPECT_EQ(top(), here);
}

TEST_F(SettingsOnTheDesktop, whoComesBackFromAnotherWindowFindsTheFormWhereItWas) {
    open();
    [window() setFrame:NSMakeRect(50, 50, 520, 420) display:YES];
    m_screen.settle();
    NSClipView* form = [[m_screen.field("Note") enclosingScrollView] contentView];
    const auto top = [form] { return NSMinY([form documentVisibleRect]); };
    NSView* const nothing = nil;
    for (NSView* focused :
         {nothing, m_screen.control("Words", [NSButton class]), m_screen.control("Story", [NSTextView class]),
          static_cast<NSView*>(m_screen.field("Note"))}) {
        SCOPED_TRACE(focused == nil ? "nothing" : toString([focused className]));
        [window() makeFirstResponder:focused];
        m_screen.settle();
        NSResponder* const responder = [window() firstResponder];
        [form scrollToPoint:NSMakePoint(0, NSHeight([[form documentView] frame]) - NSHeight([form bounds]))];
        const CGFloat here = top();
        ASSERT_GT(here, 300.0);
        [window() resignKeyWindow];
        [window() becomeKeyWindow];
        EXPECT_EQ(top(), here);
        EXPECT_EQ([window() firstResponder], responder);
    }
}

TEST_F(SettingsOnTheDesktop, aSheetShadesTheWindowToItsLowerEdge) {
    open();
    const NSRect strip = NSMakeRect(10, 2, 200, 3);
    const driver::Picture before = driver::lookAtRest(window());
    m_screen.press("Reset to default");
    m_screen.press("Save");
    ASSERT_TRUE(driver::pumpUntil([&] { return !driver::alertButtons(window()).empty(); }));
    EXPECT_NE(driver::lookAtRest(window()).inside(strip), before.inside(strip));
    driver::clickAlertButton(window(), 1);
    EXPECT_EQ(driver::lookAtRest(window()).inside(strip), before.inside(strip));
}

TEST_F(SettingsOnTheDesktop, theMainMenuTakesNoRoomInTheWindow) {
    installMainMenu(nil);
    open();
    [window() resignKeyWindow];
    [window() makeKeyAndOrderFront:nil];
    m_screen.settle();
    EXPECT_EQ(NSHeight([[window() contentView] frame]), 760.0);
    EXPECT_EQ(NSWidth([[window() contentView] frame]), 680.0);
    [NSApp setMainMenu:nil];
}

} // namespace
} // namespace menubar
