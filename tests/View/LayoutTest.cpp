#include "MenubarApp/View/Layout.h"

#include "tests/support/RecordingViewHost.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

using recording::TypewriterMeasurer;

View laidOut(View view, Size size) {
    TypewriterMeasurer measurer;
    layOut(view, size, measurer);
    return view;
}

std::string frames(View view, Size size) {
    return dumpFrames(laidOut(std::move(view), size));
}

/// "x,y widthxheight" of each child of the root.
std::vector<std::string> childFrames(View view, Size size) {
    std::vector<std::string> result;
    for (const View& child : laidOut(std::move(view), size).children) {
        const std::string line = dumpFrames(child);
        const std::size_t end = line.find('\n');
        const std::size_t start = line.rfind('(', end);
        result.push_back(line.substr(start + 1, line.find(')', start) - start - 1));
    }
    return result;
}

using Frames = std::vector<std::string>;

View text(const std::string& characters) {
    return view(Text{.text = characters});
}

View textOf(std::size_t length) {
    return text(std::string(length, 'x'));
}

// Columns

TEST(Layout, aColumnPutsViewsBelowEachOtherAtTheirIdealSize) {
    EXPECT_EQ(childFrames(view(VStack{.spacing = 8}, textOf(4), view(Button{.title = "Save"})), {200, 100}),
              (Frames{"0,0 28x16", "0,24 52x24"}));
}

TEST(Layout, aColumnAlignsViewsByTheirEdgesOrCentres) {
    const auto column = [](HorizontalAlignment alignment) {
        return view(VStack{.spacing = 0, .alignment = alignment}, textOf(4), textOf(9));
    };
    EXPECT_EQ(childFrames(column(HorizontalAlignment::leading), {101, 50}), (Frames{"0,0 28x16", "0,16 63x16"}));
    EXPECT_EQ(childFrames(column(HorizontalAlignment::center), {101, 50}), (Frames{"36,0 28x16", "19,16 63x16"}));
    EXPECT_EQ(childFrames(column(HorizontalAlignment::trailing), {101, 50}), (Frames{"73,0 28x16", "38,16 63x16"}));
}

TEST(Layout, aTextWiderThanItsColumnWraps) {
    EXPECT_EQ(childFrames(view(VStack{.spacing = 0}, textOf(10), textOf(11), textOf(20), textOf(21)), {70, 500}),
              (Frames{"0,0 70x16", "0,16 70x32", "0,48 70x32", "0,80 70x48"}));
}

TEST(Layout, aSpacerPushesWhatFollowsToTheBottom) {
    EXPECT_EQ(childFrames(view(VStack{.spacing = 4}, textOf(1), view(Spacer{}), textOf(1)), {50, 100}),
              (Frames{"0,0 7x16", "0,20 0x60", "0,84 7x16"}));
}

TEST(Layout, spacersShareTheRoomAndKeepTheirLeast) {
    EXPECT_EQ(childFrames(view(VStack{.spacing = 0}, view(Spacer{}), textOf(1), view(Spacer{})), {50, 47}),
              (Frames{"0,0 0x16", "0,16 7x16", "0,32 0x15"}));
    EXPECT_EQ(childFrames(view(VStack{.spacing = 0}, textOf(1), view(Spacer{.minLength = 10}), textOf(1)), {50, 20}),
              (Frames{"0,0 7x16", "0,16 0x10", "0,26 7x16"}));
}

TEST(Layout, aDividerIsAHairlineAcrossItsColumn) {
    EXPECT_EQ(childFrames(view(VStack{.spacing = 0}, textOf(1), view(Divider{}), textOf(1)), {50, 100}),
              (Frames{"0,0 7x16", "0,16 50x1", "0,17 7x16"}));
}

TEST(Layout, paddingIsInsideOfStacksAndAroundControls) {
    EXPECT_EQ(
        frames(view(VStack{}, textOf(1).withPadding({1, 2, 3, 4})).withPadding(Insets::symmetric(10, 20)), {100, 60}),
        "VStack (0,0 100x60)\n"
        "  Text \"x\" (22,11 7x16)\n");
}

// Rows

TEST(Layout, aRowPutsViewsBesideEachOtherCentred) {
    EXPECT_EQ(childFrames(view(HStack{.spacing = 8}, textOf(4), view(Button{.title = "Save"})), {200, 24}),
              (Frames{"0,4 28x16", "36,0 52x24"}));
}

TEST(Layout, aRowAlignsViewsByTopBottomOrFirstBaseline) {
    const auto row = [](VerticalAlignment alignment) {
        return view(HStack{.spacing = 0, .alignment = alignment}, textOf(1),
                    view(Text{.text = "x", .font = Font::caption}), view(Button{.title = ""}));
    };
    EXPECT_EQ(childFrames(row(VerticalAlignment::top), {100, 24}), (Frames{"0,0 7x16", "7,0 6x13", "13,0 24x24"}));
    EXPECT_EQ(childFrames(row(VerticalAlignment::bottom), {100, 24}), (Frames{"0,8 7x16", "7,11 6x13", "13,0 24x24"}));
    EXPECT_EQ(childFrames(row(VerticalAlignment::firstBaseline), {100, 24}),
              (Frames{"0,5 7x16", "7,7 6x13", "13,0 24x24"}));
}

TEST(Layout, aRowIsAsHighAsItsBaselineNeeds) {
    // 16 above the baseline (field) and 6 below (field): the caption fits in between.
    EXPECT_EQ(childFrames(view(VStack{.spacing = 0},
                               view(HStack{.alignment = VerticalAlignment::firstBaseline}, view(TextField{}),
                                    view(Text{.text = "x", .font = Font::caption})),
                               textOf(1)),
                          {300, 100}),
              (Frames{"0,0 300x22", "0,22 7x16"}));
}

TEST(Layout, aSpacerPushesAButtonToTheTrailingEdge) {
    const auto row = view(HStack{.spacing = 8}, textOf(4), view(Spacer{}), view(Button{.title = "Save"}));
    EXPECT_EQ(childFrames(row, {200, 24}), (Frames{"0,4 28x16", "36,12 104x0", "148,0 52x24"}));
    EXPECT_EQ(childFrames(row, {300, 24}), (Frames{"0,4 28x16", "36,12 204x0", "248,0 52x24"}));
}

TEST(Layout, aFieldTakesWhatIsLeftAndSpacersThenNothing) {
    EXPECT_EQ(childFrames(view(HStack{.spacing = 8}, textOf(2), view(TextField{}), view(Spacer{}),
                               view(Button{.title = "Choose..."})),
                          {400, 24}),
              (Frames{"0,4 14x16", "22,1 275x22", "305,12 0x0", "313,0 87x24"}));
}

TEST(Layout, fieldsShareWhatIsLeftEvenly) {
    EXPECT_EQ(childFrames(view(HStack{.spacing = 0}, view(TextField{}), view(TextField{})), {401, 22}),
              (Frames{"0,0 201x22", "201,0 200x22"}));
}

TEST(Layout, aFixedWidthHolds) {
    EXPECT_EQ(childFrames(view(HStack{.spacing = 8}, view(TextField{}).withWidth(140), view(Stepper{})), {400, 22}),
              (Frames{"0,0 140x22", "148,0 15x22"}));
}

TEST(Layout, whatFillsTakesTheRoom) {
    EXPECT_EQ(childFrames(view(HStack{.spacing = 0}, textOf(1).fillingWidth(), textOf(1)), {100, 16}),
              (Frames{"0,0 93x16", "93,0 7x16"}));
}

TEST(Layout, whereRoomIsShortFieldsGiveWayFirst) {
    // 160 + 8 + 210 do not fit into 300.
    EXPECT_EQ(childFrames(view(HStack{.spacing = 8}, view(TextField{}), textOf(30)), {300, 22}),
              (Frames{"0,0 82x22", "90,3 210x16"}));
}

TEST(Layout, thenTextsWrapTheLongestFirst) {
    EXPECT_EQ(
        childFrames(view(HStack{.spacing = 10}, textOf(100), textOf(5), view(Button{.title = "Reset"})), {300, 80}),
        (Frames{"0,8 186x64", "196,32 35x16", "241,28 59x24"}));
    // The narrow view next to a field at its least.
    EXPECT_EQ(childFrames(view(HStack{.spacing = 0}, view(TextField{}), textOf(100)), {200, 80}),
              (Frames{"0,29 60x22", "60,0 140x80"}));
}

TEST(Layout, equallyLongTextsShareTheShortage) {
    EXPECT_EQ(childFrames(view(HStack{.spacing = 0}, textOf(30), textOf(30)), {301, 32}),
              (Frames{"0,0 151x32", "151,0 150x32"}));
}

TEST(Layout, buttonsNeverShrinkAndOverflowInstead) {
    EXPECT_EQ(
        childFrames(view(HStack{.spacing = 0}, view(Button{.title = "Restart daemon"}), view(Button{.title = "Save"})),
                    {100, 24}),
        (Frames{"0,0 122x24", "122,0 52x24"}));
}

TEST(Layout, aPickerWithALongOptionFitsItsRoom) {
    EXPECT_EQ(childFrames(view(VStack{}, view(Picker{.options = {std::string(100, 'x')}})), {300, 24}),
              (Frames{"0,0 300x24"}));
    EXPECT_EQ(childFrames(view(VStack{}, view(Checkbox{.title = std::string(100, 'x')})), {300, 24}),
              (Frames{"0,0 300x18"}));
}

TEST(Layout, aRowInsideAColumnFillsItOnlyWhenSomethingInItGrows) {
    EXPECT_EQ(
        childFrames(view(VStack{.spacing = 0}, view(HStack{}, textOf(2)), view(HStack{}, textOf(2), view(Spacer{}))),
                    {100, 40}),
        (Frames{"0,0 14x16", "0,16 100x16"}));
}

// Scrolling

View footer() {
    return view(HStack{}, view(Spacer{}), view(Button{.title = "Save"})).withPadding(Insets::all(12));
}

TEST(Layout, aFormFillsWhatTheFixedFooterLeaves) {
    const auto window = [] { return view(VStack{.spacing = 0}, form({textOf(1)}), view(Divider{}), footer()); };
    EXPECT_EQ(frames(window(), {520, 420}), "VStack (0,0 520x420)\n"
                                            "  ScrollView spacing=20 (0,0 520x371) content=520x371\n"
                                            "    Text \"x\" (20,20 7x16)\n"
                                            "  Divider (0,371 520x1)\n"
                                            "  HStack (0,372 520x48)\n"
                                            "    Spacer (12,396 436x0)\n"
                                            "    Button \"Save\" (456,384 52x24)\n");
    EXPECT_EQ(childFrames(window(), {1600, 1000}), (Frames{"0,0 1600x951", "0,951 1600x1", "0,952 1600x48"}));
}

TEST(Layout, aFormScrollsWhatDoesNotFit) {
    std::vector<View> rows;
    for (int i = 0; i < 50; ++i) {
        rows.push_back(textOf(1));
    }
    const View node = laidOut(form(std::move(rows)), {300, 200});
    EXPECT_EQ(node.shown.frame, (Rect{0, 0, 300, 200}));
    EXPECT_EQ(node.shown.contentSize, (Size{300, 20 + (50 * 16) + (49 * 20) + 20}));
    EXPECT_EQ(node.children.back().shown.frame.y, 20 + (49 * 36));
}

TEST(Layout, aFooterTooHighPushesTheFormToNothingAndOverflowsBelow) {
    EXPECT_EQ(childFrames(view(VStack{.spacing = 0}, form({textOf(1)}), textOf(1).withHeight(500)), {100, 400}),
              (Frames{"0,0 100x0", "0,0 7x500"}));
}

TEST(Layout, aScrollViewWithAMostHeightIsAsHighAsItsContentUpToIt) {
    const auto errors = [](std::size_t count) {
        std::vector<View> lines;
        for (std::size_t i = 0; i < count; ++i) {
            lines.push_back(textOf(1));
        }
        return view(VStack{.spacing = 0}, form({}),
                    viewOf(ScrollView{.spacing = 0}, std::move(lines)).withMaxHeight(64));
    };
    EXPECT_EQ(childFrames(errors(3), {100, 300}), (Frames{"0,0 100x252", "0,252 100x48"}));
    EXPECT_EQ(childFrames(errors(4), {100, 300}), (Frames{"0,0 100x236", "0,236 100x64"}));
    EXPECT_EQ(childFrames(errors(5), {100, 300}), (Frames{"0,0 100x236", "0,236 100x64"}));
    EXPECT_EQ(laidOut(errors(5), {100, 300}).children[1].shown.contentSize, (Size{100, 80}));
}

TEST(Layout, whatIsCentredInAScrollViewStaysThereUntilItIsTooHigh) {
    const auto screen = [](std::size_t length) {
        return view(ScrollView{.spacing = 0}, view(Spacer{}), textOf(length), view(Spacer{}));
    };
    EXPECT_EQ(childFrames(screen(1), {70, 116})[1], "0,50 7x16");
    EXPECT_EQ(childFrames(screen(100), {70, 116})[1], "0,0 70x160");
}

TEST(Layout, theRowsOfASectionLieInTheCoordinatesOfTheirBox) {
    EXPECT_EQ(frames(form({section("Cache", {textOf(1), textOf(2)})}), {300, 150}),
              "ScrollView spacing=20 (0,0 300x150) content=300x150\n"
              "  VStack (20,20 260x99)\n"
              "    Text \"Cache\" headline (20,20 40x18)\n"
              "    Box (20,46 260x73)\n"
              "      Text \"x\" (12,10 7x16)\n"
              "      Divider (12,36 236x1)\n"
              "      Text \"xx\" (12,47 14x16)\n");
}

// Rounding, extremes

TEST(Layout, framesAreWholePointsInAWindowOfAnySize) {
    const View node = laidOut(view(VStack{.alignment = HorizontalAlignment::center},
                                   view(HStack{}, view(TextField{}), view(TextField{}), view(TextField{})), textOf(3)),
                              {333.4, 100.7});
    const auto check = [](const auto& self, const View& n) -> void {
        for (const double length : {n.shown.frame.x, n.shown.frame.y, n.shown.frame.width, n.shown.frame.height}) {
            EXPECT_EQ(length, static_cast<double>(static_cast<int>(length)));
        }
        for (const View& child : n.children) {
            self(self, child);
        }
    };
    check(check, node);
}

TEST(Layout, aSizeBetweenTwoPointsCountsAsTheLargerOne) {
    class : public Measurer {
        [[nodiscard]] Measured measure(ControlId, const View&, double) override {
            return {.width = 20.25, .height = 10.5, .baseline = 8.25};
        }
    } fractions;

    View row = view(HStack{.spacing = 0}, view(Button{}), view(Button{}));
    layOut(row, {100, 11}, fractions);
    EXPECT_EQ(dumpFrames(row.children[0]), "Button \"\" (0,0 21x11)\n");
    EXPECT_EQ(dumpFrames(row.children[1]), "Button \"\" (21,0 21x11)\n");
}

TEST(Layout, aWindowWithoutRoomGivesNoNegativeLengthsToControls) {
    const auto check = [](const auto& self, const View& n) -> void {
        EXPECT_GE(n.shown.frame.width, 0.0);
        EXPECT_GE(n.shown.frame.height, 0.0);
        for (const View& child : n.children) {
            self(self, child);
        }
    };
    check(check, laidOut(view(VStack{}, form({section("A", {view(TextField{}), textOf(50)})}), footer()), {0, 0}));
}

TEST(Layout, anEmptyRowTakesNoRoom) {
    EXPECT_EQ(childFrames(view(VStack{.spacing = 0}, view(HStack{}), textOf(1)), {100, 100}),
              (Frames{"0,0 0x0", "0,0 7x16"}));
}

// What is asked of the measurer

TEST(Layout, asksForNothingTwice) {
    TypewriterMeasurer measurer;
    View node = view(VStack{}, textOf(3), textOf(100), view(Button{.title = "Save"}));
    layOut(node, {300, 300}, measurer);
    EXPECT_EQ(measurer.measurements, 4); // the long text twice: its natural width, then wrapped
    layOut(node, {300, 300}, measurer);
    EXPECT_EQ(measurer.measurements, 4);
}

TEST(Layout, asksOnlyAboutWrappingTextsWhenTheWidthChanges) {
    TypewriterMeasurer measurer;
    View node = view(VStack{}, textOf(3), textOf(100), textOf(200), view(TextField{}));
    layOut(node, {300, 300}, measurer);
    measurer.measurements = 0;
    layOut(node, {301, 300}, measurer);
    EXPECT_EQ(measurer.measurements, 2);
    layOut(node, {301, 500}, measurer); // the height changes no text
    EXPECT_EQ(measurer.measurements, 2);
}

TEST(Layout, asksAFewTimesForEachNodeHoweverDeepItLies) {
    View deep = textOf(100);
    for (int depth = 0; depth < 60; ++depth) {
        deep = depth % 2 == 0 ? view(HStack{}, std::move(deep)) : view(VStack{}, std::move(deep));
    }
    TypewriterMeasurer measurer;
    layOut(deep, {300, 300}, measurer);
    EXPECT_EQ(measurer.measurements, 2);
}

} // namespace
} // namespace menubar
