// The strip that stands in for the menu bar.
#import "compat/gnustep/desktop/StatusStripItem.h"
#import "compat/gnustep/look/Hint.h"
#import "compat/gnustep/look/SymbolImage.h"

#include "MenubarApp/AppKit/AppKitStatusItem.h"
#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"

#include <gtest/gtest.h>

namespace menubar {
namespace {

using Tone = StatusItemPresentation::Tone;

const StatusItemPresentation running = {
    .symbolName = "eye", .title = "72%", .tone = Tone::ok, .tooltip = "Daemon running (last poll 3s ago)"};

class StatusStrip : public ::testing::Test {
protected:
    StatusStripItem* strip() { return static_cast<StatusStripItem*>(m_item.nativeItem()); }

    StatusStripButton* button() { return static_cast<StatusStripButton*>([strip() button]); }

    AppKitStatusItem m_item;
};

TEST_F(StatusStrip, hasTheDrawingOfEachSymbol) {
    for (const char* name : {"eye", "eye.trianglebadge.exclamationmark", "eye.slash"}) {
        m_item.apply({.symbolName = name, .title = "", .tone = Tone::ok, .tooltip = ""});
        EXPECT_EQ(toString([static_cast<SymbolImage*>([button() image]) symbolName]), name);
    }
}

TEST_F(StatusStrip, touchesOnlyWhatChanged) {
    const auto changesBy = [this](const StatusItemPresentation& presentation) {
        const NSUInteger before = [button() changes];
        m_item.apply(presentation);
        return [button() changes] - before;
    };
    StatusItemPresentation next = running;
    EXPECT_EQ(changesBy(next), 4U) << "symbol, tint, title, tooltip";
    EXPECT_EQ(changesBy(next), 0U);
    next.tooltip = "Daemon running (last poll 6s ago)";
    EXPECT_EQ(changesBy(next), 1U) << "tooltip";
    next.title = "73%";
    EXPECT_EQ(changesBy(next), 1U) << "title";
    next.symbolName = "eye.slash";
    EXPECT_EQ(changesBy(next), 1U) << "symbol";
    next.tone = Tone::muted;
    EXPECT_EQ(changesBy(next), 3U) << "tint, and symbol and title in it";
}

TEST_F(StatusStrip, isAtTheTopRightOfTheScreenAndSaysSo) {
    m_item.apply(running);
    const NSRect frame = [[strip() window] frame];
    const NSRect screen = [[NSScreen mainScreen] frame];
    EXPECT_EQ(NSMaxY(frame), NSMaxY(screen));
    EXPECT_LT(NSMaxX(screen) - NSMaxX(frame), 20);
    EXPECT_EQ(
        m_item.readVisibility(),
        (VisibilityProbe{.occlusionVisible = true, .onscreen = true, .x = NSMinX(frame), .width = NSWidth(frame)}));
}

TEST_F(StatusStrip, withoutRoomItIsMovedOffTheScreenAndSaysSo) {
    m_item.apply(running);
    const CGFloat needed = NSWidth([[strip() window] frame]);
    [strip() setRoom:needed - 1];
    const VisibilityProbe hidden = m_item.readVisibility();
    EXPECT_EQ(hidden.onscreen, false);
    EXPECT_EQ(hidden.occlusionVisible, false);
    EXPECT_EQ(hidden.width, needed);
    EXPECT_GE(hidden.x, NSMaxX([[NSScreen mainScreen] frame]));
    // Icon only needs less room.
    m_item.apply({.symbolName = "eye", .title = "", .tone = Tone::ok, .tooltip = ""});
    EXPECT_EQ(m_item.readVisibility().onscreen, true);
}

TEST_F(StatusStrip, showsItsTooltipWhereTheMouseRests) {
    m_item.apply(running);
    const auto move = [this](NSPoint place) {
        [NSApp postEvent:[NSEvent mouseEventWithType:NSEventTypeMouseMoved
                                            location:place
                                       modifierFlags:0
                                           timestamp:0
                                        windowNumber:[[strip() window] windowNumber]
                                             context:nil
                                         eventNumber:0
                                          clickCount:0
                                            pressure:0]
                 atStart:NO];
    };
    Hint* hint = [Hint shared];
    move(NSMakePoint(5, 5));
    ASSERT_TRUE(driver::pumpUntil([&] { return [hint text] != nil; }));
    EXPECT_EQ(toString([hint text]), "Daemon running (last poll 3s ago)");
    m_item.apply({.symbolName = "eye", .title = "72%", .tone = Tone::ok, .tooltip = "later"});
    EXPECT_EQ(toString([hint text]), "later") << "it follows a poll";
    [[strip() window] orderOut:nil];
    EXPECT_TRUE(driver::pumpUntil([&] { return [hint text] == nil; })) << "it goes with what it belongs to";
}

} // namespace
} // namespace menubar
