#include "MenubarApp/AppKit/AppKitStatusItem.h"
#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/MenuDriver.h"

#include <algorithm>
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
    NSStatusBarButton* button() { return [m_item.nativeItem() button]; }

    /// Of the item on the screen.
    CGFloat width() { return NSWidth([[button() window] frame]); }

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
        EXPECT_EQ(toString([[button() image] accessibilityDescription]), "ostrel");
        EXPECT_FALSE([[button() image] isTemplate]) << "a template in a tinted button is drawn black";
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

TEST_F(StatusItemOnScreen, aTooltipChangesAlone) {
    m_item.apply(running);
    StatusItemPresentation later = running;
    later.tooltip = "Daemon running (last poll 6s ago)";
    m_item.apply(later);
    EXPECT_EQ(toString([button() toolTip]), later.tooltip);
    EXPECT_EQ(toString([button() accessibilityLabel]), "ostrel, 72%, Daemon running (last poll 6s ago)");
}

TEST_F(StatusItemOnScreen, inCompactModeShowsTheSymbolAlone) {
    m_item.apply(running);
    const CGFloat wide = width();
    m_item.apply({.symbolName = "eye", .title = "", .tone = Tone::ok, .tooltip = "tip"});
    EXPECT_EQ([button() imagePosition], NSImageOnly);
    EXPECT_EQ([[button() attributedTitle] length], 0U);
    EXPECT_TRUE(driver::pumpUntil([&] { return width() < wide; }));
    m_item.apply(running);
    EXPECT_EQ([button() imagePosition], NSImageLeading);
    EXPECT_TRUE(driver::pumpUntil([&] { return width() == wide; }));
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

TEST_F(StatusItemOnScreen, keepsOneItemOneMenuAndOneName) {
    EXPECT_EQ([m_item.nativeItem() menu], m_item.nativeMenu());
    EXPECT_FALSE([m_item.nativeMenu() autoenablesItems]);
    EXPECT_NE([m_item.nativeMenu() delegate], nil);
    EXPECT_EQ(toString([m_item.nativeItem() autosaveName]), "ostrel-menubar");
    NSMenu* menu = m_item.nativeMenu();
    m_item.apply(running);
    m_item.setMenu({driver::label("a")});
    m_item.setMenu({driver::label("b")});
    EXPECT_EQ([m_item.nativeItem() menu], menu);
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
    id before = [m_item.nativeMenu() itemAtIndex:0];
    m_item.setMenu({driver::label("a")});
    EXPECT_EQ([m_item.nativeMenu() itemAtIndex:0], before);
}

TEST_F(StatusItemOnScreen, whatComesAndGoesInTheMiddleLeavesTheOtherItemsWhereTheyAre) {
    const auto item = [&](NSInteger index) {
        return static_cast<NSMenuItem*>([m_item.nativeMenu() itemAtIndex:index]);
    };
    const auto titles = [&] {
        std::vector<std::string> all;
        for (NSMenuItem* each in [m_item.nativeMenu() itemArray]) {
            all.push_back([each isSeparatorItem] ? "-" : toString([each title]));
        }
        return all;
    };
    const Menu before = {driver::label("running"), driver::separator(),
                         driver::command("acme", MenuAction::focusSession, 1), driver::separator(),
                         driver::command("Quit", MenuAction::quit)};
    m_item.setMenu(before);
    NSMenuItem* const first = item(0);
    NSMenuItem* const acme = item(2);
    NSMenuItem* const quit = item(4);
    m_item.setMenu({driver::label("running still"), driver::separator(),
                    driver::command("acme 2", MenuAction::focusSession, 1),
                    driver::command("beta", MenuAction::focusSession, 2), driver::label("new"), driver::separator(),
                    driver::command("Quit", MenuAction::quit)});
    EXPECT_EQ(titles(), (std::vector<std::string>{"running still", "-", "acme 2", "beta", "new", "-", "Quit"}));
    EXPECT_EQ(item(0), first);
    EXPECT_EQ(item(2), acme);
    EXPECT_EQ(item(6), quit);
    m_item.setMenu(before);
    EXPECT_EQ(titles(), (std::vector<std::string>{"running", "-", "acme", "-", "Quit"}));
    EXPECT_EQ(item(0), first);
    EXPECT_EQ(item(4), quit);
}

/// How many pixels are this much more of one component than of the other two. Not of a colour to the letter: the tints
/// are other ones on a dark menu bar.
int pixelsWith(CGFloat excess, NSBitmapImageRep* picture, std::size_t component) {
    int count = 0;
    for (NSInteger y = 0; y < [picture pixelsHigh]; ++y) {
        for (NSInteger x = 0; x < [picture pixelsWide]; ++x) {
            NSColor* pixel = [[picture colorAtX:x y:y] colorUsingColorSpace:[NSColorSpace genericRGBColorSpace]];
            const CGFloat parts[] = {[pixel redComponent], [pixel greenComponent], [pixel blueComponent]};
            const CGFloat others = std::max(parts[(component + 1) % 3], parts[(component + 2) % 3]);
            count += parts[component] - others > excess ? 1 : 0;
        }
    }
    return count;
}

TEST_F(StatusItemOnScreen, drawsThreeDifferentSymbolsInTheTint) {
    std::set<std::string> pictures;
    for (const char* symbol : {"eye", "eye.trianglebadge.exclamationmark", "eye.slash"}) {
        SCOPED_TRACE(symbol);
        m_item.apply({.symbolName = symbol, .title = "", .tone = Tone::critical, .tooltip = ""});
        const auto drawn = driver::draw(button());
        EXPECT_GT(pixelsWith(0.5, drawn.get(), 0), 20) << "red";
        EXPECT_EQ(pixelsWith(0.2, drawn.get(), 1), 0) << "green";
        pictures.insert(driver::bytesOf(drawn.get()));
    }
    EXPECT_EQ(pictures.size(), 3U);
}

} // namespace
} // namespace menubar
