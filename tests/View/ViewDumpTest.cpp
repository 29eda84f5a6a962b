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

TEST(ViewDump, writesEachKindInOneLine) {
    const std::vector<Case> cases = {
        {view(VStack{}), "VStack spacing=8"},
        {view(VStack{.spacing = 2, .alignment = HorizontalAlignment::center}), "VStack spacing=2 center"},
        {view(VStack{.alignment = HorizontalAlignment::trailing}), "VStack spacing=8 trailing"},
        {view(HStack{}), "HStack spacing=8"},
        {view(HStack{.spacing = 4.5, .alignment = VerticalAlignment::firstBaseline}), "HStack spacing=4.5 baseline"},
        {view(HStack{.alignment = VerticalAlignment::top}), "HStack spacing=8 top"},
        {view(HStack{.alignment = VerticalAlignment::bottom}), "HStack spacing=8 bottom"},
        {view(Spacer{}), "Spacer"},
        {view(Spacer{.minLength = 6}), "Spacer min=6"},
        {view(ScrollView{}), "ScrollView spacing=8"},
        {view(Box{}), "Box"},
        {view(Spinner{}), "Spinner"},
        {view(Text{.text = "a \"b\"\nc\\"}), R"(Text "a \"b\"\nc\\")"},
        {view(Text{
             .text = "x", .font = Font::headline, .color = TextColor::secondary, .selectable = true, .lineLimit = 2}),
         "Text \"x\" headline secondary selectable lines=2"},
        {view(Text{.text = "x", .font = Font::monospaced}), "Text \"x\" monospaced"},
        {view(Symbol{.name = "lock", .description = "Locked", .font = Font::caption, .color = TextColor::red}),
         "Symbol lock described=\"Locked\" caption red"},
        {view(Divider{}), "Divider"},
        {view(Button{.title = "Save"}), "Button \"Save\""},
        {view(Button{.title = "Add",
                     .symbol = "plus.circle",
                     .style = ButtonStyle::borderless,
                     .shortcut = KeyShortcut::commandS,
                     .enabled = false}),
         "Button \"Add\" plus.circle borderless key=cmd-s disabled"},
        {view(Button{.style = ButtonStyle::small, .shortcut = KeyShortcut::cancelAction}),
         "Button \"\" small key=escape"},
        {view(Button{.shortcut = KeyShortcut::defaultAction}), "Button \"\" key=return"},
        {view(Toggle{.isOn = true}), "Toggle on"},
        {view(Toggle{.enabled = false}), "Toggle off disabled"},
        {view(Checkbox{.title = "warn", .isOn = true}), "Checkbox \"warn\" on"},
        {view(Checkbox{.title = "warn", .enabled = false}), "Checkbox \"warn\" off disabled"},
        {view(TextField{.text = "12", .prompt = "Item 1"}), "TextField \"12\" prompt=\"Item 1\""},
        {view(TextField{.enabled = false}), "TextField \"\" disabled"},
        {view(TextEditor{.text = "a\nb"}), R"(TextEditor "a\nb")"},
        {view(Stepper{.value = 3, .min = 0, .max = 10.5}), "Stepper 3 min=0 max=10.5"},
        {view(Stepper{.value = 0.5, .step = 2, .enabled = false}), "Stepper 0.5 step=2 disabled"},
        {view(Picker{.options = {"a", "b"}, .selection = 1}), "Picker \"a\" *\"b\""},
        {view(Picker{.options = {"a"}, .enabled = false}), "Picker \"a\" disabled"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(dump(c.view), c.line + "\n");
    }
}

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
