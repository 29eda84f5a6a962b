#import "tests/appkit/WindowFixture.h"

#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/WindowDriver.h"
#include "tests/support/TemporaryDirectory.h"

#include <filesystem>
#include <memory>
#include <string>

#include <gmock/gmock.h>

namespace menubar {
namespace {

using driver::alertButtons;
using driver::clickAlertButton;
using driver::OpenPanelTest;
using driver::options;
using driver::pressKey;
using driver::pump;
using driver::pumpUntil;
using driver::question;
using driver::RecordedEvents;
using driver::WindowTest;
using testing::ElementsAre;
using testing::IsEmpty;

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
    if (NSHeight(screen) < NSHeight(frame)) {
        GTEST_SKIP() << "this screen is smaller than the window";
    }
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
    ASSERT_TRUE(pumpUntil([&] { return [native() isMiniaturized] != NO; }));
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

// Alerts

TEST_F(WindowTest, anAlertReturnsAtOnceAndTellsLaterWhichButtonWasPressed) {
    m_window->bringForward();
    for (const std::size_t button : {0U, 1U}) {
        m_answers.clear();
        ask();
        EXPECT_THAT(alertButtons(native()), ElementsAre("Restart", "Later"));
        EXPECT_THAT(m_answers, IsEmpty());
        clickAlertButton(native(), button);
        EXPECT_THAT(m_answers, ElementsAre(button));
        EXPECT_THAT(alertButtons(native()), IsEmpty());
    }
}

TEST_F(WindowTest, returnPressesTheFirstButtonAndEscapeTheLast) {
    m_window->bringForward();
    ASSERT_TRUE(pumpUntil([&] { return [native() isKeyWindow] != NO; }));
    for (NSString* key in @[ @"\r", @"\033" ]) {
        ask();
        pressKey(native(), key);
        ASSERT_TRUE(pumpUntil([&] { return alertButtons(native()).empty(); }));
    }
    EXPECT_THAT(m_answers, ElementsAre(0U, 1U));
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
    ASSERT_TRUE(pumpUntil([&] { return alertButtons(native()).empty() && [native() isKeyWindow]; }));
    driver::typeKeys(native(), "e"); // the insertion point is back where it was
    [native() makeFirstResponder:nil];
    EXPECT_EQ(toString([field.get() stringValue]), "abe");
    [field.get() removeFromSuperview];
}

TEST_F(WindowTest, nobodyIsToldWhenTheWindowClosesUnderItsAlert) {
    m_window->bringForward();
    ask();
    [native() close]; // the close box may be without effect meanwhile
    EXPECT_EQ(m_events->closed, 1);
    EXPECT_THAT(alertButtons(native()), IsEmpty());
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

TEST_F(OpenPanelTest, beginsWhereTheChosenFileIs) {
    const testing_support::TemporaryDirectory directory;
    for (const std::string& path : {directory.path(), directory / "not there yet.log"}) {
        m_chosen.clear();
        std::string start;
        act([&](NSOpenPanel* panel) {
            start = toString([[panel directoryURL] path]);
            [panel cancel:nil];
        });
        chooseFile(path);
        ASSERT_TRUE(pumpUntil([&] { return !m_chosen.empty(); }));
        EXPECT_EQ(std::filesystem::canonical(start), std::filesystem::canonical(directory.path())) << path;
        [m_hand.get() stop];
    }
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
    Class windowClass = Nil;
    const auto openAndClose = [&windowClass] {
        @autoreleasepool {
            const auto events = std::make_shared<RecordedEvents>();
            AppKitWindow window(options, events);
            windowClass = [window.window() class];
            window.bringForward();
            window.showAlert(question, [](std::size_t) {});
            driver::pump(std::chrono::milliseconds(1));
            [window.window() close];
            EXPECT_EQ(events->closed, 1);
        }
        driver::pump(std::chrono::milliseconds(1));
    };
    for (int i = 0; i < 20; ++i) {
        openAndClose();
    }
    const int windowsBefore = driver::liveObjects(windowClass);
    const std::size_t before = driver::residentBytes();
    for (int i = 0; i < 200; ++i) {
        openAndClose();
    }
    const std::size_t after = driver::residentBytes();
    EXPECT_EQ(driver::liveObjects(windowClass), windowsBefore);
    if (driver::isMemoryMeasurable) {
        constexpr std::size_t windowBuffer = 680 * 760 * 4; // one forgotten window a round would be 200 of these
        EXPECT_LT(after, before + 8 * windowBuffer);
    }
}

} // namespace
} // namespace menubar
