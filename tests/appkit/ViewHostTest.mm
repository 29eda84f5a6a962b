#import "tests/appkit/Eyes.h"
#import "tests/appkit/ViewHostFixture.h"

#import "MenubarApp/AppKit/Callback.h"
#import "MenubarApp/AppKit/Controls/Containers.h"
#import "MenubarApp/AppKit/Controls/KeyControls.h"
#import "MenubarApp/AppKit/Controls/TextEditor.h"
#import "MenubarApp/AppKit/Controls/TextField.h"

#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"

#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace menubar {
namespace {

using Lines = std::vector<std::string>;

constexpr double infinity = std::numeric_limits<double>::infinity();

class ViewHostInAWindow : public driver::ControlsInAWindow {
protected:
    Lines takeLog() { return m_events->takeLog(); }

    Measured measured(ControlId shown, const View::Content& content, double width = infinity) {
        return host().measure(shown, {.content = content}, width);
    }

    static std::string picture(NSView* view) { return driver::bytesOf(driver::draw(view).get()); }

    static std::string shownPicture(NSView* view) { return driver::bytesOf(driver::look(view).get()); }
};

TEST_F(ViewHostInAWindow, whatMovesLeavesNothingWhereItWas) {
    const ControlId scroll = add(ScrollView{});
    host().place(scroll, {.x = 0, .y = 0, .width = 300, .height = 300});
    host().setContentSize(scroll, {.width = 300, .height = 300});
    const ControlId box = add(Box{}, scroll);
    const ControlId text = add(Text{.text = "Span"}, box);
    const ControlId loose = add(Button{.title = "loose"});
    host().place(box, {.x = 20, .y = 100, .width = 260, .height = 120});
    host().place(text, {.x = 10, .y = 90, .width = 100, .height = 20});
    host().place(loose, {.x = 350, .y = 200, .width = 100, .height = 24});
    const std::string before = shownPicture(m_content.get());
    host().place(box, {.x = 20, .y = 20, .width = 260, .height = 100});
    host().place(text, {.x = 10, .y = 10, .width = 80, .height = 20});
    host().place(loose, {.x = 350, .y = 20, .width = 80, .height = 24});
    const std::string after = shownPicture(m_content.get());
    EXPECT_NE(after, before);
    EXPECT_TRUE(after == picture(m_content.get())) << "something of the past is still to be seen";
}

// Texts

TEST_F(ViewHostInAWindow, aTextIsAsHighAsItsWrappedLines) {
    const Text text{.text = "one two three four five six seven eight nine ten"};
    const ControlId shown = add(text);
    const Measured natural = measured(shown, text);
    for (const double width : {natural.width, natural.width / 2, natural.width / 3, 60.0}) {
        const Measured wrapped = measured(shown, text, width);
        EXPECT_LE(wrapped.width, width);
        EXPECT_GE(wrapped.width * wrapped.height, natural.width * natural.height * 0.9) << width;
        EXPECT_EQ(static_cast<int>(wrapped.height) % static_cast<int>(natural.height), 0) << width;
    }
    EXPECT_EQ(measured(shown, text, natural.width).height, natural.height);
    EXPECT_GT(measured(shown, text, natural.width - 1).height, natural.height);
}

TEST_F(ViewHostInAWindow, aTextHonoursItsOwnLinesAndItsLimit) {
    const Text text{.text = "a\nb\nc\nd"};
    const ControlId shown = add(text);
    const double line = measured(shown, text).height / 4;
    Text limited = text;
    limited.lineLimit = 2;
    update(shown, limited, text);
    EXPECT_EQ(measured(shown, limited).height, 2 * line);
}

TEST_F(ViewHostInAWindow, anEmptyTextIsOneLineHigh) {
    const Text empty{};
    const Text letter{.text = "a"};
    const ControlId shown = add(empty);
    const double height = measured(shown, empty).height;
    update(shown, letter, empty);
    EXPECT_EQ(measured(shown, letter).height, height);
}

TEST_F(ViewHostInAWindow, aWordThatIsWiderThanItsRoomIsBroken) {
    const Text text{.text = std::string(200, 'x')};
    const ControlId shown = add(text);
    const Measured natural = measured(shown, text);
    const Measured wrapped = measured(shown, text, 100.0);
    EXPECT_LE(wrapped.width, 100.0);
    EXPECT_GE(wrapped.height, natural.height * (natural.width / 100.0));
}

TEST_F(ViewHostInAWindow, aTextChangesItsLook) {
    const Text before{.text = "a"};
    const Text now{.text = "b", .font = Font::headline, .color = TextColor::red, .selectable = true, .lineLimit = 1};
    const ControlId shown = add(before);
    auto* label = native<NSTextField>(shown);
    EXPECT_FALSE([label isSelectable]);
    update(shown, now, before);
    EXPECT_EQ(toString([label stringValue]), "b");
    EXPECT_TRUE([[label font] isEqual:[NSFont boldSystemFontOfSize:[NSFont systemFontSize]]]);
    EXPECT_TRUE([[label textColor] isEqual:[NSColor systemRedColor]]);
    EXPECT_TRUE([label isSelectable]);
    EXPECT_FALSE([label isEditable]);
}

TEST_F(ViewHostInAWindow, aSelectableTextCanBeCopiedAndNotTypedInto) {
    const ControlId shown = add(Text{.text = "/bin/ostrel failed", .selectable = true});
    click(host().nativeView(shown));
    ASSERT_NE(editor(), nil);
    [editor() selectAll:nil];
    [editor() copy:nil];
    EXPECT_EQ(toString([[NSPasteboard generalPasteboard] stringForType:NSPasteboardTypeString]), "/bin/ostrel failed");
    type("x");
    EXPECT_EQ(shownText(shown), "/bin/ostrel failed");
    EXPECT_EQ(takeLog(), Lines{});
}

// The window

TEST_F(ViewHostInAWindow, tellsItsSizeAtFirstAndAfterEachChange) {
    EXPECT_EQ(m_events->sizes, (std::vector<Size>{{.width = 600.0, .height = 400.0}}));
    NSRect frame = [m_window.get() frame];
    frame.size.width += 50;
    [m_window.get() setFrame:frame display:YES];
    ASSERT_EQ(m_events->sizes.size(), 2U);
    EXPECT_EQ(m_events->sizes.back(), (Size{.width = 650.0, .height = 400.0}));
}

TEST_F(ViewHostInAWindow, ordersControlsAsTold) {
    const ControlId a = add(Text{.text = "a"});
    const ControlId b = add(Text{.text = "b"});
    const ControlId c = add(Text{.text = "c"});
    host().arrange(windowContent, std::vector{c, a, b});
    NSArray* expected = @[ host().nativeView(c), host().nativeView(a), host().nativeView(b) ];
    EXPECT_TRUE([[m_content.get() subviews] isEqualToArray:expected]);
}

TEST_F(ViewHostInAWindow, holdsControlsInBoxesAndScrollViews) {
    const ControlId scroll = add(ScrollView{});
    host().place(scroll, {.x = 0, .y = 0, .width = 300, .height = 200});
    const ControlId box = add(Box{}, scroll);
    const ControlId text = add(Text{.text = "a"}, box);
    host().setContentSize(scroll, {.width = 300, .height = 1000});
    EXPECT_EQ([host().nativeView(text) superview], host().nativeView(box));
    NSView* document = [native<NSScrollView>(scroll) documentView];
    EXPECT_EQ([host().nativeView(box) superview], document);
    EXPECT_TRUE([document isFlipped]);
    EXPECT_TRUE([host().nativeView(box) isFlipped]);
    EXPECT_EQ(NSHeight([document frame]), 1000.0);
    EXPECT_EQ(NSWidth([native<NSScrollView>(scroll) documentVisibleRect]), 300.0) << "all of its width is shown";
}

TEST_F(ViewHostInAWindow, scrollsAsLittleAsNeeded) {
    const ControlId scroll = add(ScrollView{});
    host().place(scroll, {.x = 0, .y = 0, .width = 300, .height = 200});
    host().setContentSize(scroll, {.width = 300, .height = 1000});
    const auto top = [&] { return NSMinY([native<NSScrollView>(scroll) documentVisibleRect]); };
    EXPECT_EQ(top(), 0.0);
    host().scrollToVisible(scroll, {.x = 0, .y = 500, .width = 300, .height = 50});
    EXPECT_EQ(top(), 358.0) << "with a little room below it";
    host().scrollToVisible(scroll, {.x = 0, .y = 400, .width = 300, .height = 50});
    EXPECT_EQ(top(), 358.0) << "it is in sight";
    host().scrollToVisible(scroll, {.x = 0, .y = 100, .width = 300, .height = 50});
    EXPECT_EQ(top(), 92.0);
    host().setContentSize(scroll, {.width = 300, .height = 1100});
    EXPECT_EQ(top(), 92.0) << "a change of the content keeps the place";
}

TEST_F(ViewHostInAWindow, contentThatGetsShorterLeavesNoEmptyRoomInSight) {
    const ControlId scroll = add(ScrollView{});
    host().place(scroll, {.x = 0, .y = 0, .width = 300, .height = 200});
    host().setContentSize(scroll, {.width = 300, .height = 1000});
    host().scrollToVisible(scroll, {.x = 0, .y = 999, .width = 300, .height = 1});
    host().setContentSize(scroll, {.width = 300, .height = 500});
    EXPECT_EQ(NSMinY([native<NSScrollView>(scroll) documentVisibleRect]), 300.0);
    host().setContentSize(scroll, {.width = 300, .height = 100});
    EXPECT_EQ(NSMinY([native<NSScrollView>(scroll) documentVisibleRect]), 0.0);
}

TEST_F(ViewHostInAWindow, whatGetsTheFocusComesIntoSight) {
    const ControlId scroll = add(ScrollView{});
    host().place(scroll, {.x = 0, .y = 0, .width = 300, .height = 100});
    const std::vector<View::Content> contents = {Button{.title = "a"},    Toggle{},     Checkbox{.title = "b"},
                                                 TextField{.text = "c"},  TextEditor{}, Stepper{},
                                                 Picker{.options = {"d"}}};
    std::vector<ControlId> made;
    for (const auto& content : contents) {
        const ControlId shown = add(content, scroll);
        host().place(shown, {.x = 10, .y = 300.0 * static_cast<double>(made.size()), .width = 100, .height = 24});
        made.push_back(shown);
    }
    host().setContentSize(scroll, {.width = 300, .height = 3000});
    for (const ControlId shown : made) {
        focus(shown);
        EXPECT_TRUE(
            NSContainsRect([native<NSScrollView>(scroll) documentVisibleRect], [host().nativeView(shown) frame]))
            << shown;
        EXPECT_EQ(focused(), shown);
    }
}

TEST_F(ViewHostInAWindow, showsHelp) {
    host().create(1, windowContent, {.content = Button{.title = "a"}, .tooltip = "first"});
    NSView* view = host().nativeView(1);
    EXPECT_EQ(toString([view toolTip]), "first");
    host().update(1, {.content = Button{.title = "a"}, .tooltip = "second"},
                  {.content = Button{.title = "a"}, .tooltip = "first"});
    EXPECT_EQ(toString([view toolTip]), "second");
    host().update(1, {.content = Button{.title = "a"}}, {.content = Button{.title = "a"}, .tooltip = "second"});
    EXPECT_EQ([[view toolTip] length], 0U);
}

TEST_F(ViewHostInAWindow, everyControlThatTakesKeysIsInTheTabOrder) {
    const std::vector<ControlId> order = {
        add(Button{.title = "a"}),    add(Toggle{}),  add(Checkbox{.title = "b"}),  add(TextField{.text = "c"}),
        add(TextEditor{.text = "d"}), add(Stepper{}), add(Picker{.options = {"e"}})};
    host().setTabOrder(order);
    focus(order.front());
    for (std::size_t i = 1; i <= order.size(); ++i) {
        key('\t');
        EXPECT_EQ(focused(), order[i % order.size()]) << i;
    }
    for (std::size_t i = order.size(); i > 0; --i) {
        key(0x19, NSEventModifierFlagShift);
        EXPECT_EQ(focused(), order[i - 1]) << i;
    }
}

TEST_F(ViewHostInAWindow, nothingIsLeftInTheWindowAfterEverythingIsDestroyed) {
    const ControlId box = add(Box{});
    const ControlId inside = add(TextField{.text = "a"}, box);
    const ControlId spinner = add(Spinner{});
    focus(inside);
    (void)takeLog();
    for (const ControlId gone : {inside, box, spinner}) {
        host().destroy(gone);
    }
    EXPECT_EQ([[m_content.get() subviews] count], 0U);
    EXPECT_EQ([m_window.get() firstResponder], m_window.get());
    EXPECT_EQ(takeLog(), Lines{});
}

TEST_F(ViewHostInAWindow, oneSeesWhichControlHasTheFocus) {
    const std::vector<ControlId> made = {add(Button{.title = "a"}),    add(Toggle{}),     add(Checkbox{.title = "b"}),
                                         add(TextField{.text = "c"}),  add(TextEditor{}), add(Stepper{}),
                                         add(Picker{.options = {"d"}})};
    for (const ControlId shown : made) {
        SCOPED_TRACE(shown);
        constexpr CGFloat ring = 6.0; // may lie around the control
        const NSRect place = driver::placeInPicture(host().nativeView(shown));
        driver::expectSeen(
            m_window.get(), NSInsetRect(place, -ring, -ring), [&] { focus(shown); },
            [&] { [m_window.get() makeFirstResponder:nil]; });
    }
}

/// How many objects of the app's own classes there are.
std::vector<int> liveObjects() {
    std::vector<int> counts;
    for (Class each : {[MenubarTextField class],
                       [MenubarTextEditor class],
                       [MenubarButton class],
                       [MenubarSwitch class],
                       [MenubarStepper class],
                       [MenubarPicker class],
                       [MenubarCallback class],
                       [MenubarFlippedView class],
                       [MenubarBoxView class]}) {
        counts.push_back(driver::liveObjects(each));
    }
    return counts;
}

TEST(ViewHost, twoHundredWindowsLeaveNothingBehind) {
    const std::vector<int> before = liveObjects();
    for (int i = 0; i < 200; ++i) {
        @autoreleasepool {
            const auto content = makeFlippedContentView();
            NSWindow* window = [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, 300, 300)
                                                           styleMask:NSWindowStyleMaskTitled
                                                             backing:NSBackingStoreBuffered
                                                               defer:NO];
            [window setReleasedWhenClosed:NO];
            [window setContentView:content.get()];
            auto host = std::make_unique<AppKitViewHost>(content.get());
            ControlId made = 0;
            for (const View::Content& each :
                 {View::Content(Box{}), View::Content(TextField{.text = "a"}), View::Content(TextEditor{}),
                  View::Content(Button{.title = "b"}), View::Content(Toggle{}), View::Content(Stepper{}),
                  View::Content(Picker{.options = {"c"}}), View::Content(Spinner{})}) {
                host->create(++made, windowContent, {.content = each});
            }
            host->setTabOrder(std::vector<ControlId>{2, 3, 4, 5, 6, 7});
            [window makeKeyAndOrderFront:nil];
            [window makeFirstResponder:host->keyView(2 + static_cast<ControlId>(i % 2))];
            host.reset();
            [window close];
            [window release];
        }
        driver::pump(driver::milliseconds(1));
    }
    EXPECT_TRUE(driver::pumpUntil([&] { return liveObjects() == before; })) << ::testing::PrintToString(liveObjects());
}

} // namespace
} // namespace menubar
