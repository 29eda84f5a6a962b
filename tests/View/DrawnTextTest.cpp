#include "MenubarApp/View/DrawnText.h"

#include "tests/support/ViewDump.h"

#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace menubar {
namespace {

std::string drawn(View view) {
    makeDrawable(view);
    return dump(view);
}

TEST(DrawnText, replacesWhatMustNotBeDrawnInEveryTextButTheEditedOnes) {
    const auto screen = [](const std::string& shown, const std::string& edited) {
        return view(VStack{}, view(Text{.text = shown}).withTooltip(shown).withAccessibility(shown, shown),
                    view(Symbol{.name = "lock", .description = shown}), view(Button{.title = shown}),
                    view(Checkbox{.title = shown}), view(Picker{.options = {shown}, .selection = 0}),
                    section(shown, {view(TextField{.text = edited, .prompt = shown})}),
                    view(TextEditor{.text = edited}));
    };
    const std::string bad = "a\x1b\u202e"
                            "b";
    EXPECT_EQ(drawn(screen(bad, bad)), dump(screen("a\uFFFD\uFFFD"
                                                   "b",
                                                   bad)));
}

TEST(DrawnText, keepsLineFeedsAndOtherScripts) {
    EXPECT_EQ(drawn(view(Text{.text = "größe\n日本語"})), "Text \"größe\\n日本語\"\n");
}

TEST(DrawnText, cutsOnlyTextsBeyondTheLimitAndNeverInsideACharacter) {
    const auto cut = [](std::string text) {
        View shown = view(Text{.text = std::move(text)});
        makeDrawable(shown);
        return std::get<Text>(shown.content).text;
    };
    const std::string longest(drawnTextLimit, 'x');
    EXPECT_EQ(cut(longest), longest);
    EXPECT_EQ(cut(longest + "y"), longest + "…");
    std::string euros;
    while (euros.size() <= drawnTextLimit) {
        euros += "€";
    }
    const std::string whole = cut(euros);
    EXPECT_TRUE(whole.ends_with("€…"));
    EXPECT_EQ(whole.find("\uFFFD"), std::string::npos);
    EXPECT_LE(whole.size(), drawnTextLimit + std::string("…").size());
}

} // namespace
} // namespace menubar
