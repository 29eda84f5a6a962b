#import "MenubarApp/AppKit/AppKitWindow.h"

#import <GNUstepGUI/GSTheme.h>

#import "compat/gnustep/desktop/AlertView.h"
#import "compat/gnustep/shim/SheetWindow.h"

#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/WindowDriver.h"
#include "tests/support/TemporaryDirectory.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// Does something to the open panel while it is up: its loop runs no more than timers and events.
@interface PanelHand : NSObject {
    std::function<void(NSOpenPanel*)> _act;
    menubar::ObjCPointer<NSTimer> _timer;
}
- (instancetype)initWithAct:(std::function<void(NSOpenPanel*)>)act;
@end

@implementation PanelHand

- (instancetype)initWithAct:(std::function<void(NSOpenPanel*)>)act {
    self = [super init];
    if (self != nil) {
        _act = std::move(act);
        _timer = menubar::ObjCPointer<NSTimer>::retain([NSTimer timerWithTimeInterval:0.02
                                                                               target:self
                                                                             selector:@selector(fire)
                                                                             userInfo:nil
                                                                              repeats:YES]);
        [[NSRunLoop mainRunLoop] addTimer:_timer.get() forMode:NSModalPanelRunLoopMode];
    }
    return self;
}

- (void)fire {
    // Not [NSOpenPanel openPanel], which gives the panel its defaults back.
    NSWindow* panel = [NSApp modalWindow];
    if ([panel isKindOfClass:[NSOpenPanel class]]) {
        if (const auto act = std::exchange(_act, nullptr)) {
            act(static_cast<NSOpenPanel*>(panel));
        }
    }
    // What ends a modal loop from within a timer is noticed with the next event.
    [NSApp postEvent:[NSEvent otherEventWithType:NSEventTypeApplicationDefined
                                        location:NSZeroPoint
                                   modifierFlags:0
                                       timestamp:0
                                    windowNumber:0
                                         context:nil
                                         subtype:0
                                           data1:0
                                           data2:0]
             atStart:NO];
}

- (void)stop {
    [_timer.get() invalidate]; // which retains this object
}

@end

namespace menubar {
namespace {

using driver::alertButtons;
using driver::clickAlertButton;
using driver::pressKey;
using driver::pump;
using driver::pumpUntil;
using driver::RecordedEvents;
using testing::ElementsAre;
using testing::IsEmpty;

const WindowOptions options{.title = "Test Settings",
                            .contentSize = {.width = 680.0, .height = 760.0},
                            .minimumSize = {.width = 520.0, .height = 420.0}};

const Alert question{.message = "Settings saved", .information = "Restart it now?", .buttons = {"Restart", "Later"}};

class WindowTest : public testing::Test {
  protected:
    WindowTest() { make(); }

    void make() {
        m_window = std::make_unique<AppKitWindow>(options, m_events);
        m_native = ObjCPointer<NSWindow>::retain(m_window->window());
    }

    void ask() {
        m_window->showAlert(question, [this](std::size_t button) { m_answers.push_back(button); });
    }

    void chooseFile() {
        m_window->chooseFile({.title = "Log file"}, [this](std::optional<std::string> path) {
            m_chosen.push_back(path.value_or("(cancelled)"));
        });
    }

    [[nodiscard]] NSWindow* native() const { return m_native.get(); }

    std::shared_ptr<RecordedEvents> m_events = std::make_shared<RecordedEvents>();
    std::unique_ptr<AppKitWindow> m_window;
    ObjCPointer<NSWindow> m_native;
    std::vector<std::size_t> m_answers;
    std::vector<std::string> m_chosen;
};

// The window

TEST_F(WindowTest, hasTheSizeTheStyleAndTheTitleThatWereAskedFor) {
    EXPECT_EQ([[native() contentView] frame].size.width, 680.0);
    EXPECT_EQ([[native() contentView] frame].size.height, 760.0);
    EXPECT_EQ([native() minSize].width, 520.0);
    EXPECT_EQ([native() minSize].height, 420.0);
    EXPECT_EQ([native() styleMask],
              static_cast<NSUInteger>(NSWindowStyleMaskTitled | NSWindowStyleMaskClosable |
                                      NSWindowStyleMaskMiniaturizable | NSWindowStyleMaskResizable));
    EXPECT_EQ(toString([native() title]), "Test Settings");
    EXPECT_FALSE([native() isReleasedWhenClosed]);
    EXPECT_FALSE([native() isVisible]);
}

TEST_F(WindowTest, liesInTheMiddleOfTheScreen) {
    const NSRect frame = [native() frame];
    const NSRect screen = [[NSScreen mainScreen] visibleFrame];
    EXPECT_NEAR(NSMidX(frame), NSMidX(screen), 1.0);
    EXPECT_TRUE(NSContainsRect(screen, frame)) << toString(NSStringFromRect(frame));
}

TEST_F(WindowTest, comesForwardAsTheKeyWindowHoweverOftenItIsAsked) {
    m_window->bringForward();
    ASSERT_TRUE(pumpUntil([&] { return [native() isKeyWindow] != NO; }));
    m_window->bringForward();
    pump(std::chrono::milliseconds(50));
    EXPECT_TRUE([native() isVisible]);
    EXPECT_EQ([NSApp keyWindow], native());
    EXPECT_EQ(m_events->closed, 0);
}

TEST_F(WindowTest, comesForwardAgainAfterItWasMinimised) {
    m_window->bringForward();
    [native() miniaturize:nil];
    pump(std::chrono::milliseconds(50));
    m_window->bringForward();
    ASSERT_TRUE(pumpUntil([&] { return [native() isVisible] && ![native() isMiniaturized]; }));
}

TEST_F(WindowTest, tellsOnceThatItCloses) {
    m_window->bringForward();
    m_window->performClose();
    EXPECT_EQ(m_events->closed, 1);
    EXPECT_FALSE([native() isVisible]);
    m_window->performClose();
    m_window.reset();
    EXPECT_EQ(m_events->closed, 1);
}

TEST_F(WindowTest, goesWithoutAWordWhenItIsDestroyed) {
    m_window->bringForward();
    m_window.reset();
    EXPECT_EQ(m_events->closed, 0);
    EXPECT_FALSE([native() isVisible]);
}

TEST_F(WindowTest, closesForNobodyOnceItsReceiverIsGone) {
    m_window->bringForward();
    m_events.reset();
    m_window->performClose();
    EXPECT_FALSE([native() isVisible]);
}

TEST_F(WindowTest, mayBeDestroyedRightAfterItClosed) {
    struct Destroyer final : WindowEvents {
        void windowWillClose() override { isClosing = true; }
        bool isClosing = false;
    };
    const auto destroyer = std::make_shared<Destroyer>();
    AppKitWindowFactory factory;
    auto window = factory.makeWindow(options, destroyer);
    window->bringForward();
    window->performClose();
    ASSERT_TRUE(destroyer->isClosing);
    window.reset();
    pump(std::chrono::milliseconds(50));
}

TEST_F(WindowTest, keepsItsLookWhenTheUserDefaultsChange) {
    m_window->bringForward();
    GSTheme* const look = [GSTheme theme];
    ASSERT_NE([look class], [GSTheme class]);
    [[NSNotificationCenter defaultCenter] postNotificationName:NSUserDefaultsDidChangeNotification
                                                        object:[NSUserDefaults standardUserDefaults]];
    pump(std::chrono::milliseconds(20));
    EXPECT_EQ([GSTheme theme], look);
    EXPECT_TRUE([native() isVisible]);
}

// Alerts

TEST_F(WindowTest, anAlertReturnsAtOnceAndShowsItsButtonsTheFirstRightmost) {
    m_window->bringForward();
    ask();
    EXPECT_THAT(alertButtons(native()), ElementsAre("Restart", "Later"));
    EXPECT_THAT(m_answers, IsEmpty());
    AlertView* alert = static_cast<AlertView*>([static_cast<SheetWindow*>(native()) sheetView]);
    const NSRect first = [[[alert buttons] objectAtIndex:0] frame];
    const NSRect second = [[[alert buttons] objectAtIndex:1] frame];
    EXPECT_GT(NSMinX(first), NSMaxX(second));
    EXPECT_TRUE(NSContainsRect([alert panelFrame], first));
    EXPECT_TRUE(NSContainsRect([alert panelFrame], second));
}

TEST_F(WindowTest, anAlertTellsWhichButtonWasPressed) {
    m_window->bringForward();
    ask();
    clickAlertButton(native(), 0);
    EXPECT_THAT(m_answers, ElementsAre(0U));
    EXPECT_THAT(alertButtons(native()), IsEmpty());
    ask();
    clickAlertButton(native(), 1);
    EXPECT_THAT(m_answers, ElementsAre(0U, 1U));
}

TEST_F(WindowTest, returnPressesTheFirstButtonAndEscapeTheLast) {
    m_window->bringForward();
    ASSERT_TRUE(pumpUntil([&] { return [native() isKeyWindow] != NO; }));
    ask();
    pressKey(native(), @"\r");
    ask();
    pressKey(native(), @"\033");
    EXPECT_THAT(m_answers, ElementsAre(0U, 1U));
    EXPECT_THAT(alertButtons(native()), IsEmpty());
}

TEST_F(WindowTest, spacePressesTheButtonThatTabHasLedTo) {
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

TEST_F(WindowTest, anAlertKeepsOtherKeysFromWhatIsBeneath) {
    const auto field = ObjCPointer<NSTextField>::adopt([[NSTextField alloc] initWithFrame:NSMakeRect(20, 20, 200, 24)]);
    [[native() contentView] addSubview:field.get()];
    m_window->bringForward();
    ASSERT_TRUE(pumpUntil([&] { return [native() isKeyWindow] != NO; }));
    [native() makeFirstResponder:field.get()];
    driver::typeKeys(native(), "ab");
    ask();
    driver::typeKeys(native(), "cd");
    EXPECT_THAT(alertButtons(native()), ElementsAre("Restart", "Later"));
    EXPECT_EQ(toString([field.get() stringValue]), "ab");
    pressKey(native(), @"\033");
    driver::typeKeys(native(), "e"); // the insertion point is back where it was
    [native() makeFirstResponder:nil];
    EXPECT_EQ(toString([field.get() stringValue]), "abe");
    [field.get() removeFromSuperview];
}

TEST_F(WindowTest, anAlertKeepsClicksFromWhatIsBeneath) {
    m_window->bringForward();
    ask();
    NSView* frameView = [[native() contentView] superview];
    const NSPoint corner = [[native() contentView] convertPoint:NSMakePoint(5, 5) toView:frameView];
    EXPECT_EQ([frameView hitTest:corner], [static_cast<SheetWindow*>(native()) sheetView]);
    clickAlertButton(native(), 1);
    EXPECT_TRUE([[frameView hitTest:corner] isDescendantOf:[native() contentView]]);
}

TEST_F(WindowTest, anAlertFollowsTheSizeOfItsWindow) {
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

TEST_F(WindowTest, nobodyIsToldWhenTheWindowClosesUnderItsAlert) {
    m_window->bringForward();
    ask();
    m_window->performClose();
    EXPECT_EQ(m_events->closed, 1);
    EXPECT_THAT(alertButtons(native()), IsEmpty());
    EXPECT_THAT(m_answers, IsEmpty());
}

TEST_F(WindowTest, nobodyIsToldWhenTheWindowIsDestroyedUnderItsAlert) {
    m_window->bringForward();
    ask();
    const auto sheet =
        ObjCPointer<AlertView>::retain(static_cast<AlertView*>([static_cast<SheetWindow*>(native()) sheetView]));
    m_window.reset();
    [[[sheet.get() buttons] objectAtIndex:0] performClick:nil];
    EXPECT_THAT(m_answers, IsEmpty());
}

TEST_F(WindowTest, theAnswerMayDestroyTheWindow) {
    m_window->bringForward();
    m_window->showAlert(question, [this](std::size_t button) {
        m_window.reset();
        m_answers.push_back(button);
    });
    clickAlertButton(native(), 0);
    EXPECT_THAT(m_answers, ElementsAre(0U));
    EXPECT_FALSE([native() isVisible]);
}

TEST_F(WindowTest, theAnswerMayAskAgain) {
    m_window->bringForward();
    m_window->showAlert(question, [this](std::size_t) { ask(); });
    clickAlertButton(native(), 1);
    EXPECT_THAT(alertButtons(native()), ElementsAre("Restart", "Later"));
    clickAlertButton(native(), 0);
    EXPECT_THAT(m_answers, ElementsAre(0U));
}

// The open panel

class OpenPanelTest : public WindowTest {
  protected:
    OpenPanelTest() { m_window->bringForward(); }

    ~OpenPanelTest() override { [m_hand.get() stop]; }

    OpenPanelTest(const OpenPanelTest&) = delete;
    OpenPanelTest& operator=(const OpenPanelTest&) = delete;

    void act(std::function<void(NSOpenPanel*)> act) {
        m_hand = ObjCPointer<PanelHand>::adopt([[PanelHand alloc] initWithAct:std::move(act)]);
    }

    ObjCPointer<PanelHand> m_hand;
};

TEST_F(OpenPanelTest, offersOneFileOrDirectoryHiddenOnesToo) {
    bool wasLookedAt = false;
    act([&](NSOpenPanel* panel) {
        wasLookedAt = true;
        EXPECT_EQ(toString([panel title]), "Log file");
        EXPECT_TRUE([panel canChooseFiles]);
        EXPECT_TRUE([panel canChooseDirectories]);
        EXPECT_FALSE([panel allowsMultipleSelection]);
        EXPECT_TRUE([panel showsHiddenFiles]);
        [panel cancel:nil];
    });
    chooseFile();
    EXPECT_FALSE(wasLookedAt) << "it is shown in a later turn of the main loop";
    ASSERT_TRUE(pumpUntil([&] { return !m_chosen.empty(); }));
    EXPECT_TRUE(wasLookedAt);
    EXPECT_THAT(m_chosen, ElementsAre("(cancelled)"));
}

TEST_F(OpenPanelTest, givesThePathOfTheFileThatWasChosen) {
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

TEST_F(OpenPanelTest, nobodyIsToldWhenTheWindowGoesBeforeThePanelIsUp) {
    chooseFile();
    m_window.reset();
    pump(std::chrono::milliseconds(50));
    EXPECT_EQ([NSApp modalWindow], nil);
    EXPECT_THAT(m_chosen, IsEmpty());
}

TEST_F(OpenPanelTest, nobodyIsToldWhenTheWindowGoesUnderThePanel) {
    bool isGone = false;
    act([&](NSOpenPanel*) {
        m_window.reset();
        isGone = true;
    });
    chooseFile();
    ASSERT_TRUE(pumpUntil([&] { return isGone && [NSApp modalWindow] == nil; }));
    EXPECT_THAT(m_chosen, IsEmpty());
}

// Growth

TEST(WindowGrowth, openingAndClosingItAgainAndAgainLeavesNothingBehind) {
    const auto openAndClose = [] {
        @autoreleasepool {
            const auto events = std::make_shared<RecordedEvents>();
            AppKitWindow window(options, events);
            window.bringForward();
            window.showAlert(question, [](std::size_t) {});
            driver::pump(std::chrono::milliseconds(1));
            window.performClose();
            EXPECT_EQ(events->closed, 1);
        }
        driver::pump(std::chrono::milliseconds(1));
    };
    for (int i = 0; i < 20; ++i) {
        openAndClose();
    }
    GSDebugAllocationActive(YES);
    const int windowsBefore = GSDebugAllocationCount([SheetWindow class]);
    const int alertsBefore = GSDebugAllocationCount([AlertView class]);
    const std::size_t before = driver::residentBytes();
    for (int i = 0; i < 200; ++i) {
        openAndClose();
    }
    const std::size_t after = driver::residentBytes();
    EXPECT_EQ(GSDebugAllocationCount([SheetWindow class]), windowsBefore);
    EXPECT_EQ(GSDebugAllocationCount([AlertView class]), alertsBefore);
    GSDebugAllocationActive(NO);
    if (driver::isMemoryMeasurable) {
        constexpr std::size_t windowBuffer = 680 * 760 * 4; // one forgotten window a round would be 200 of these
        EXPECT_LT(after, before + 8 * windowBuffer);
    }
}

} // namespace
} // namespace menubar
