#import "compat/gnustep/desktop/StatusStripItem.h"
#import "compat/gnustep/look/Hint.h"
#import "compat/gnustep/look/SymbolImage.h"

#include "MenubarApp/AppKit/AppKitStatusItem.h"
#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/MenuDriver.h"

#include <cmath>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

using Tone = StatusItemPresentation::Tone;

const StatusItemPresentation running = {
    .symbolName = "eye", .title = "72%", .tone = Tone::ok, .tooltip = "Daemon running (last poll 3s ago)"};

class StatusItemOnScreen : public ::testing::Test {
  protected:
    StatusStripItem* strip() { return static_cast<StatusStripItem*>(m_item.nativeItem()); }

    StatusStripButton* button() { return static_cast<StatusStripButton*>([strip() button]); }

    SymbolImage* image() { return static_cast<SymbolImage*>([button() image]); }

    /// The button's pixels as they are drawn now.
    ObjCPointer<NSBitmapImageRep> picture() {
        @autoreleasepool {
            [button() display];
            [button() lockFocus];
            NSBitmapImageRep* rep = [[NSBitmapImageRep alloc] initWithFocusedViewRect:[button() bounds]];
            [button() unlockFocus];
            return ObjCPointer<NSBitmapImageRep>::adopt(rep);
        }
    }

    AppKitStatusItem m_item;
};

struct ToneCase {
    Tone tone;
    const char* symbol;
    NSColor* tint;
};

TEST_F(StatusItemOnScreen, showsSymbolTitleTintAndTooltipForEveryTone) {
    const std::vector<ToneCase> cases = {
        {Tone::ok, "eye", [NSColor systemGreenColor]},
        {Tone::warn, "eye.trianglebadge.exclamationmark", [NSColor systemOrangeColor]},
        {Tone::critical, "eye.trianglebadge.exclamationmark", [NSColor systemRedColor]},
        {Tone::muted, "eye.slash", [NSColor secondaryLabelColor]},
    };
    for (const ToneCase& c : cases) {
        SCOPED_TRACE(rawText(c.tone));
        m_item.apply({.symbolName = c.symbol, .title = "81%", .tone = c.tone, .tooltip = "tip"});
        EXPECT_EQ(toString([image() symbolName]), c.symbol);
        EXPECT_EQ(toString([image() accessibilityDescription]), "ostrel");
        EXPECT_TRUE([image() isTemplate]);
        EXPECT_TRUE([[button() contentTintColor] isEqual:c.tint]);
        EXPECT_EQ([button() imagePosition], NSImageLeading);
        NSAttributedString* title = [button() attributedTitle];
        EXPECT_EQ(toString([title string]), " 81%");
        EXPECT_TRUE([[title attribute:NSForegroundColorAttributeName atIndex:0 effectiveRange:nullptr] isEqual:c.tint]);
        NSFont* font = [title attribute:NSFontAttributeName atIndex:0 effectiveRange:nullptr];
        EXPECT_EQ([font pointSize], [NSFont systemFontSize]);
        EXPECT_EQ(toString([button() toolTip]), "tip");
    }
}

TEST_F(StatusItemOnScreen, inCompactModeShowsTheSymbolAlone) {
    m_item.apply(running);
    const CGFloat wide = NSWidth([[strip() window] frame]);
    m_item.apply({.symbolName = "eye", .title = "", .tone = Tone::ok, .tooltip = "tip"});
    EXPECT_EQ([button() imagePosition], NSImageOnly);
    EXPECT_EQ([[button() attributedTitle] length], 0U);
    EXPECT_LT(NSWidth([[strip() window] frame]), wide);
    m_item.apply(running);
    EXPECT_EQ([button() imagePosition], NSImageLeading);
    EXPECT_EQ(NSWidth([[strip() window] frame]), wide);
}

TEST_F(StatusItemOnScreen, tellsScreenReadersProductPercentageAndState) {
    m_item.apply(running);
    EXPECT_EQ(toString([button() accessibilityLabel]), "ostrel, 72%, Daemon running (last poll 3s ago)");
}

TEST_F(StatusItemOnScreen, drawsNothingRawThatCameFromOutside) {
    m_item.apply({.symbolName = "eye", .title = "7\u202E\n", .tone = Tone::ok, .tooltip = "a\nb\u202E"});
    EXPECT_EQ(toString([[button() attributedTitle] string]), " 7\uFFFD\uFFFD");
    EXPECT_EQ(toString([button() toolTip]), "a\nb\uFFFD");
    EXPECT_EQ(toString([button() accessibilityLabel]), "ostrel, 7\uFFFD\uFFFD, a\uFFFDb\uFFFD");
}

TEST_F(StatusItemOnScreen, touchesOnlyWhatChanged) {
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
    EXPECT_EQ(changesBy(next), 2U) << "tint, and the title in it";
}

TEST_F(StatusItemOnScreen, keepsOneItemOneMenuAndOneName) {
    EXPECT_EQ([strip() menu], m_item.nativeMenu());
    EXPECT_FALSE([m_item.nativeMenu() autoenablesItems]);
    EXPECT_NE([m_item.nativeMenu() delegate], nil);
    EXPECT_EQ(toString([strip() autosaveName]), "ostrel-menubar");
    NSMenu* menu = m_item.nativeMenu();
    m_item.apply(running);
    m_item.setMenu({driver::label("a")});
    m_item.setMenu({driver::label("b")});
    EXPECT_EQ([strip() menu], menu);
}

TEST_F(StatusItemOnScreen, setMenuReplacesEveryItem) {
    m_item.setMenu({driver::label("a"), driver::separator(), driver::command("b", MenuAction::quit)});
    ASSERT_EQ([m_item.nativeMenu() numberOfItems], 3);
    EXPECT_FALSE([driver::itemTitled(m_item.nativeMenu(), "a") isEnabled]);
    EXPECT_TRUE([driver::itemTitled(m_item.nativeMenu(), "b") isEnabled]);
    EXPECT_TRUE([[m_item.nativeMenu() itemAtIndex:1] isSeparatorItem]);
    m_item.setMenu({driver::label("c")});
    ASSERT_EQ([m_item.nativeMenu() numberOfItems], 1);
    EXPECT_EQ(toString([[m_item.nativeMenu() itemAtIndex:0] title]), "c");
}

TEST_F(StatusItemOnScreen, aMenuThatIsTheSameKeepsItsItems) {
    m_item.setMenu({driver::label("a")});
    id<NSMenuItem> before = [m_item.nativeMenu() itemAtIndex:0];
    m_item.setMenu({driver::label("a")});
    EXPECT_EQ([m_item.nativeMenu() itemAtIndex:0], before);
}

/// How many pixels have about that colour.
int pixelsLike(NSBitmapImageRep* picture, NSColor* color) {
    NSColor* wanted = [color colorUsingColorSpaceName:NSCalibratedRGBColorSpace];
    int count = 0;
    for (NSInteger y = 0; y < [picture pixelsHigh]; ++y) {
        for (NSInteger x = 0; x < [picture pixelsWide]; ++x) {
            NSColor* pixel = [[picture colorAtX:x y:y] colorUsingColorSpaceName:NSCalibratedRGBColorSpace];
            const CGFloat distance = std::abs([pixel redComponent] - [wanted redComponent]) +
                                     std::abs([pixel greenComponent] - [wanted greenComponent]) +
                                     std::abs([pixel blueComponent] - [wanted blueComponent]);
            count += distance < 0.1 ? 1 : 0;
        }
    }
    return count;
}

TEST_F(StatusItemOnScreen, drawsThreeDifferentSymbolsInTheTint) {
    std::set<std::string> pictures;
    for (const char* symbol : {"eye", "eye.trianglebadge.exclamationmark", "eye.slash"}) {
        SCOPED_TRACE(symbol);
        m_item.apply({.symbolName = symbol, .title = "", .tone = Tone::critical, .tooltip = ""});
        const auto drawn = picture();
        EXPECT_GT(pixelsLike(drawn.get(), [NSColor systemRedColor]), 20);
        EXPECT_EQ(pixelsLike(drawn.get(), [NSColor systemGreenColor]), 0);
        const auto size = static_cast<std::size_t>([drawn.get() bytesPerPlane]);
        pictures.emplace(reinterpret_cast<const char*>([drawn.get() bitmapData]), size);
    }
    EXPECT_EQ(pictures.size(), 3U);
}

TEST_F(StatusItemOnScreen, isAtTheTopRightOfTheScreenAndSaysSo) {
    m_item.apply(running);
    const NSRect frame = [[strip() window] frame];
    const NSRect screen = [[NSScreen mainScreen] frame];
    EXPECT_EQ(NSMaxY(frame), NSMaxY(screen));
    EXPECT_LT(NSMaxX(screen) - NSMaxX(frame), 20);
    EXPECT_EQ(
        m_item.readVisibility(),
        (VisibilityProbe{.occlusionVisible = true, .onscreen = true, .x = NSMinX(frame), .width = NSWidth(frame)}));
}

TEST_F(StatusItemOnScreen, withoutRoomItIsMovedOffTheScreenAndSaysSo) {
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

TEST_F(StatusItemOnScreen, showsItsTooltipWhereTheMouseRests) {
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
