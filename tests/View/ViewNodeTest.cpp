#include "MenubarApp/View/ViewNode.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

/// One line a node: its control or its kind of stack, without frames.
std::string outline(const ViewNode& node, int depth = 0) {
    std::string line = std::string(static_cast<std::size_t>(depth) * 2, ' ');
    line += node.control ? dump(*node.control) : node.style.kind == LayoutStyle::Kind::spacer ? "-" : "|";
    line += '\n';
    for (const ViewNode& child : node.children) {
        line += outline(child, depth + 1);
    }
    return line;
}

TEST(ViewNode, aFormIsAScrollView) {
    const ViewNode node = makeNode(view(Form{}, view(Text{.text = "a"})));
    EXPECT_EQ(outline(node), "ScrollView spacing=20\n  Text \"a\"\n");
    EXPECT_EQ(node.style.sizing.padding, Insets::all(20));
}

TEST(ViewNode, aSectionIsATitleAndRowsOnABoxWithHairlinesBetween) {
    EXPECT_EQ(outline(makeNode(view(Section{.title = "Cache"}, view(Text{.text = "a"}), view(Text{.text = "b"}),
                                    view(Text{.text = "c"})))),
              "|\n"
              "  Text \"Cache\" headline\n"
              "  Box\n"
              "    Text \"a\"\n"
              "    Divider\n"
              "    Text \"b\"\n"
              "    Divider\n"
              "    Text \"c\"\n");
}

TEST(ViewNode, aSectionWithoutTitleIsOnlyItsBox) {
    EXPECT_EQ(outline(makeNode(view(Section{}, view(Text{.text = "a"})))), "|\n  Box\n    Text \"a\"\n");
}

TEST(ViewNode, aSectionWithoutRowsIsOnlyItsTitle) {
    EXPECT_EQ(outline(makeNode(view(Section{.title = "Cache"}))), "|\n  Text \"Cache\" headline\n");
    EXPECT_EQ(outline(makeNode(view(Section{}))), "|\n");
}

TEST(ViewNode, aLabelIsASymbolAndATextThatCarriesHelpAndAccessibility) {
    EXPECT_EQ(outline(makeNode(view(Label{.symbol = "lock",
                                          .symbolDescription = "Locked",
                                          .text = "By a flag",
                                          .font = Font::caption,
                                          .color = TextColor::red,
                                          .symbolColor = TextColor::orange,
                                          .selectable = true})
                                   .withHelp("h")
                                   .withAccessibility("l", "d"))),
              "|\n"
              "  Symbol lock described=\"Locked\" caption orange\n"
              "  Text \"By a flag\" caption red selectable help=\"h\" label=\"l\" description=\"d\"\n");
}

TEST(ViewNode, aProgressViewIsASpinnerAboveItsTitle) {
    EXPECT_EQ(outline(makeNode(view(ProgressView{.title = "Loading"}))),
              "|\n  Spinner label=\"Loading\"\n  Text \"Loading\"\n");
}

TEST(ViewNode, tellsSiblingsApartByIdentityKindAndOrder) {
    const ViewNode node = makeNode(view(VStack{}, view(Text{}).withId("a"), view(Text{}), view(Text{}).withId("a"),
                                        view(Toggle{}).withId("a"), view(Text{}), view(HStack{}), view(HStack{})));
    std::vector<std::size_t> ordinals;
    for (const ViewNode& child : node.children) {
        ordinals.push_back(child.key.ordinal);
    }
    EXPECT_EQ(ordinals, (std::vector<std::size_t>{0, 0, 1, 0, 1, 0, 1}));
    EXPECT_EQ(node.children[0].key.kind, node.children[2].key.kind);
    EXPECT_NE(node.children[0].key.kind, node.children[3].key.kind);
    EXPECT_NE(node.children[0].key.kind, node.children[5].key.kind);
    EXPECT_EQ(node.children[0].key.id, "a");
}

TEST(ViewNode, replacesWhatMustNotBeDrawnInEveryTextButTheEditedOnes) {
    const std::string bad = "a\x1b\u202e"
                            "b";
    const std::string good = "a\uFFFD\uFFFD"
                             "b";
    const ViewNode node = makeNode(view(VStack{}, view(Text{.text = bad}).withHelp(bad).withAccessibility(bad, bad),
                                        view(Symbol{.name = "lock", .description = bad}), view(Button{.title = bad}),
                                        view(Checkbox{.title = bad}), view(Picker{.options = {bad}, .selection = 0}),
                                        view(Section{.title = bad}), view(TextField{.text = bad, .prompt = bad}),
                                        view(TextEditor{.text = bad})));
    EXPECT_EQ(outline(node), "|\n"
                             "  Text \"" +
                                 good + "\" help=\"" + good + "\" label=\"" + good + "\" description=\"" + good +
                                 "\"\n"
                                 "  Symbol lock described=\"" +
                                 good +
                                 "\"\n"
                                 "  Button \"" +
                                 good +
                                 "\"\n"
                                 "  Checkbox \"" +
                                 good +
                                 "\" off\n"
                                 "  Picker *\"" +
                                 good +
                                 "\"\n"
                                 "  |\n"
                                 "    Text \"" +
                                 good +
                                 "\" headline\n"
                                 "  TextField \"" +
                                 bad + "\" prompt=\"" + good +
                                 "\"\n"
                                 "  TextEditor \"" +
                                 bad + "\"\n");
}

TEST(ViewNode, keepsLineFeedsAndOtherScripts) {
    EXPECT_EQ(outline(makeNode(view(Text{.text = "größe\n日本語"}))), "Text \"größe\\n日本語\"\n");
}

TEST(ViewNode, cutsOnlyTextsBeyondTheLimitAndNeverInsideACharacter) {
    const auto drawn = [](std::string text) {
        return std::get<Text>(makeNode(view(Text{.text = std::move(text)})).control->content).text;
    };
    const std::string longest(drawnTextLimit, 'x');
    EXPECT_EQ(drawn(longest), longest);
    EXPECT_EQ(drawn(longest + "y"), longest + "…");
    std::string euros;
    while (euros.size() <= drawnTextLimit) {
        euros += "€";
    }
    const std::string cut = drawn(euros);
    EXPECT_TRUE(cut.ends_with("€…"));
    EXPECT_EQ(cut.find("\uFFFD"), std::string::npos);
    EXPECT_LE(cut.size(), drawnTextLimit + std::string("…").size());
}

} // namespace
} // namespace menubar
