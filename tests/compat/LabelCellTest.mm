// The text of a label as the stand-in draws it.
#import "tests/appkit/ViewHostFixture.h"

#import "compat/gnustep/look/Controls.h"

#include "MenubarApp/AppKit/Conversions.h"

#include <string>

namespace menubar {
namespace {

using LabelInAWindow = driver::ControlsInAWindow;

TEST_F(LabelInAWindow, whatDoesNotFitItsLinesEndsInAnEllipsis) {
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

} // namespace
} // namespace menubar
