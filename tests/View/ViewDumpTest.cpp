#include "tests/support/ViewDump.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

struct Case {
    View view;
    std::string line;
};

TEST(ViewDump, appendsWhatAnyViewMayHave) {
    EXPECT_EQ(dump(view(Text{.text = "x"})
                       .withId("name")
                       .withWidth(140)
                       .withHeight(20)
                       .withMaxHeight(60)
                       .fillingWidth()
                       .fillingHeight()
                       .withPadding({1, 2, 3, 4})
                       .withTooltip("what it does")
                       .withAccessibility("Name", "an error")),
              "Text \"x\" #name width=140 height=20 max-height=60 fill-width fill-height padding=1,2,3,4 "
              "help=\"what it does\" label=\"Name\" description=\"an error\"\n");
}

TEST(ViewDump, indentsWhatAViewHolds) {
    EXPECT_EQ(dump(view(VStack{}, view(HStack{}, view(Text{.text = "a"}), view(Spacer{})), view(Divider{}))),
              "VStack spacing=8\n"
              "  HStack spacing=8\n"
              "    Text \"a\"\n"
              "    Spacer\n"
              "  Divider\n");
}

TEST(View, aFormIsAScrollView) {
    EXPECT_EQ(dump(form({view(Text{.text = "a"})})), "ScrollView spacing=20 padding=20,20,20,20\n  Text \"a\"\n");
}

TEST(View, aSectionIsATitleAndRowsOnABoxWithHairlinesBetween) {
    EXPECT_EQ(dump(section("Cache", {view(Text{.text = "a"}), view(Text{.text = "b"}), view(Text{.text = "c"})})),
              "VStack spacing=8 fill-width\n"
              "  Text \"Cache\" headline\n"
              "  Box fill-width padding=10,12,10,12\n"
              "    Text \"a\"\n"
              "    Divider\n"
              "    Text \"b\"\n"
              "    Divider\n"
              "    Text \"c\"\n");
}

TEST(View, aSectionHasNoTextForAnEmptyTitleAndNoBoxAroundNothing) {
    EXPECT_EQ(dump(section("", {view(Text{.text = "a"})})),
              "VStack spacing=8 fill-width\n  Box fill-width padding=10,12,10,12\n    Text \"a\"\n");
    EXPECT_EQ(dump(section("Cache", {})), "VStack spacing=8 fill-width\n  Text \"Cache\" headline\n");
}

TEST(View, aLabelIsASymbolBesideAText) {
    EXPECT_EQ(dump(label({.name = "lock", .description = "Locked", .color = TextColor::orange},
                         {.text = "By a flag", .font = Font::caption})),
              "HStack spacing=6 baseline\n"
              "  Symbol lock described=\"Locked\" orange\n"
              "  Text \"By a flag\" caption\n");
}

TEST(View, aProgressViewIsASpinnerAboveItsTitle) {
    EXPECT_EQ(dump(progressView("Loading")), "VStack spacing=8 center\n"
                                             "  Spinner label=\"Loading\"\n"
                                             "  Text \"Loading\"\n");
}

TEST(View, isEqualWhateverItsHandlersAre) {
    EXPECT_EQ(view(Button{.title = "Save", .onPress = [] {}}), view(Button{.title = "Save"}));
    EXPECT_NE(view(Button{.title = "Save"}), view(Button{.title = "Close"}));
}

} // namespace
} // namespace menubar
