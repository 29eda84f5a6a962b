// What the stand-in's windows have of their own: alerts that lie over the content, a look, an open panel.
#import "tests/appkit/WindowFixture.h"

#import <GNUstepGUI/GSTheme.h>

#import "compat/gnustep/desktop/AlertView.h"
#import "compat/gnustep/shim/SheetWindow.h"

#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/WindowDriver.h"
#include "tests/support/TemporaryDirectory.h"

#include <string>

#include <gmock/gmock.h>

namespace menubar {
namespace {

using driver::clickAlertButton;
using driver::pressKey;
using driver::pump;
using driver::pumpUntil;
using testing::ElementsAre;
using testing::IsEmpty;

using SheetWindowTest = driver::WindowTest;
using SheetWindowPanelTest = driver::OpenPanelTest;

TEST_F(SheetWindowTest, keepsItsLookWhenTheUserDefaultsChange) {
    m_window->bringForward();
    GSTheme* const look = [GSTheme theme];
    ASSERT_NE([look class], [GSTheme class]);
    [[NSNotificationCenter defaultCenter] postNotificationName:NSUserDefaultsDidChangeNotification
                                                        object:[NSUserDefaults standardUserDefaults]];
    pump(std::chrono::milliseconds(20));
    EXPECT_EQ([GSTheme theme], look);
    EXPECT_TRUE([native() isVisible]);
}

TEST_F(SheetWindowTest, anAlertsFirstButtonIsTheRightmost) {
    m_window->bringForward();
    ask();
    AlertView* alert = static_cast<AlertView*>([static_cast<SheetWindow*>(native()) sheetView]);
    const NSRect first = [[[alert buttons] objectAtIndex:0] frame];
    const NSRect second = [[[alert buttons] objectAtIndex:1] frame];
    EXPECT_GT(NSMinX(first), NSMaxX(second));
    EXPECT_TRUE(NSContainsRect([alert panelFrame], first));
    EXPECT_TRUE(NSContainsRect([alert panelFrame], second));
}

TEST_F(SheetWindowTest, itsCloseBoxClosesItUnderItsAlertToo) {
    m_window->bringForward();
    ask();
    m_window->performClose();
    EXPECT_EQ(m_events->closed, 1);
    EXPECT_FALSE([native() isVisible]);
    EXPECT_THAT(m_answers, IsEmpty());
}

TEST_F(SheetWindowTest, spacePressesTheButtonThatTabHasLedTo) {
    m_window->bringForward();
    ASSERT_TRUE(pumpUntil([&] { return [native() isKeyWindow] != NO; }));
    ask();
    pressKey(native(), @" ");
    ask();
    pressKey(native(), @"\t");
    pressKey(native(), @" ");
    ask();
    pressKey(native(), @"\t");
    pressKey(native(), @"\t");
    pressKey(native(), @" ");
    EXPECT_THAT(m_answers, ElementsAre(0U, 1U, 0U));
}

TEST_F(SheetWindowTest, anAlertKeepsClicksFromWhatIsBeneath) {
    m_window->bringForward();
    ask();
    NSView* frameView = [[native() contentView] superview];
    const NSPoint corner = [[native() contentView] convertPoint:NSMakePoint(5, 5) toView:frameView];
    EXPECT_EQ([frameView hitTest:corner], [static_cast<SheetWindow*>(native()) sheetView]);
    clickAlertButton(native(), 1);
    EXPECT_TRUE([[frameView hitTest:corner] isDescendantOf:[native() contentView]]);
}

TEST_F(SheetWindowTest, anAlertFollowsTheSizeOfItsWindow) {
    m_window->bringForward();
    ask();
    AlertView* alert = static_cast<AlertView*>([static_cast<SheetWindow*>(native()) sheetView]);
    for (const CGFloat width : {520.0, 1100.0}) {
        [native() setFrame:NSMakeRect(20, 20, width, 440) display:YES];
        EXPECT_EQ(NSWidth([alert frame]), NSWidth([[native() contentView] frame]));
        EXPECT_NEAR(NSMidX([alert panelFrame]), NSWidth([alert bounds]) / 2, 1.0);
        EXPECT_TRUE(NSContainsRect([alert panelFrame], [[[alert buttons] objectAtIndex:0] frame]));
    }
    clickAlertButton(native(), 1);
}

TEST_F(SheetWindowTest, nobodyIsToldWhenTheWindowIsDestroyedUnderItsAlert) {
    m_window->bringForward();
    ask();
    const auto sheet =
        ObjCPointer<AlertView>::retain(static_cast<AlertView*>([static_cast<SheetWindow*>(native()) sheetView]));
    m_window.reset();
    [[[sheet.get() buttons] objectAtIndex:0] performClick:nil];
    EXPECT_THAT(m_answers, IsEmpty());
}

TEST_F(SheetWindowPanelTest, givesThePathOfTheFileThatWasChosen) {
    const testing_support::TemporaryDirectory directory;
    const std::string path = directory.write(".hidden file", "");
    act([&](NSOpenPanel* panel) {
        [panel setDirectory:toNSString(directory.path())];
        NSBrowser* browser = nil;
        for (NSView* view in [[panel contentView] subviews]) {
            browser = [view isKindOfClass:[NSBrowser class]] ? static_cast<NSBrowser*>(view) : browser;
            for (NSView* inner in [view subviews]) {
                browser = [inner isKindOfClass:[NSBrowser class]] ? static_cast<NSBrowser*>(inner) : browser;
            }
        }
        ASSERT_NE(browser, nil);
        EXPECT_TRUE([browser setPath:toNSString(path)]);
        [panel ok:nil];
    });
    chooseFile();
    ASSERT_TRUE(pumpUntil([&] { return !m_chosen.empty(); }));
    EXPECT_THAT(m_chosen, ElementsAre(path));
}

} // namespace
} // namespace menubar
