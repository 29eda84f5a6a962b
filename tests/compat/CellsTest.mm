// Texts and steppers as the stand-in draws them.
#import "tests/appkit/Eyes.h"
#import "tests/appkit/ViewHostFixture.h"

#import "compat/gnustep/look/Controls.h"

#include "MenubarApp/AppKit/Conversions.h"

#include <string>

namespace menubar {
namespace {

using CellInAWindow = driver::ControlsInAWindow;

TEST_F(CellInAWindow, whatDoesNotFitItsLinesEndsInAnEllipsis) {
    std::string words;
    for (int i = 0; i < 40; ++i) {
        words += "word ";
    }
    const Text limited{.text = words, .lineLimit = 2};
    const ControlId shown = add(limited);
    auto* cell = static_cast<LabelCell*>([native<NSTextField>(shown) cell]);
    const Measured two = host().measure(shown, {.content = limited}, 200.0);
    const std::string cut = toString([cell textShownIn:NSMakeSize(204.0, two.height)]);
    EXPECT_TRUE(cut.ends_with("…")) << cut;
    EXPECT_TRUE(words.starts_with(cut.substr(0, cut.size() - std::string("…").size())));
    EXPECT_GT(cut.size(), 30U);
    EXPECT_EQ(toString([cell textShownIn:NSMakeSize(5000.0, two.height)]), words);
    update(shown, Text{.text = words}, limited);
    EXPECT_EQ(toString([cell textShownIn:NSMakeSize(204.0, two.height)]), words);
}

TEST_F(CellInAWindow, aTitleThatDoesNotFitEndsInAnEllipsis) {
    const std::string title = "a title that is far too long for the two hundred points that it has here";
    const ControlId shown = add(Checkbox{.title = title});
    const driver::Picture cut = driver::lookAtRest(m_window.get());
    std::string looksLike;
    for (std::size_t length = title.size(); length > 10 && looksLike.empty(); --length) {
        const std::string part = title.substr(0, length - 1) + "…";
        update(shown, Checkbox{.title = part}, Checkbox{.title = title});
        if (driver::lookAtRest(m_window.get()) == cut) {
            looksLike = part;
        }
    }
    EXPECT_TRUE(looksLike.starts_with("a title that is")) << looksLike;
    // A shorter one that fits looks otherwise.
    update(shown, Checkbox{.title = "a title…"}, Checkbox{.title = title});
    EXPECT_FALSE(driver::lookAtRest(m_window.get()) == cut);
}

TEST_F(CellInAWindow, anArrowThatLeadsNowhereIsDim) {
    const Stepper within{.value = 5, .min = 0, .max = 10};
    const Stepper atItsMaximum{.value = 10, .min = 0, .max = 10};
    const ControlId shown = add(within);
    driver::expectSeen(
        m_window.get(), driver::placeInPicture(host().nativeView(shown)), [&] { update(shown, atItsMaximum, within); },
        [&] { update(shown, within, atItsMaximum); });
}

} // namespace
} // namespace menubar
