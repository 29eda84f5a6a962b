#include "MenubarApp/View/Reconciler.h"

#include "tests/support/RecordingViewHost.h"

#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace menubar {
namespace {

using recording::RecordingViewHost;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

View text(const std::string& characters) {
    return view(Text{.text = characters});
}

/// A reconciler on a window that records; every test ends without a call that makes no sense.
class ReconcilerTest : public ::testing::Test {
protected:
    void TearDown() override { EXPECT_THAT(m_host.faults, IsEmpty()); }

    void show(View view) {
        m_reconciler.show(std::move(view));
        m_reconciler.layOut({200, 200});
    }

    /// What showing the view told the host.
    std::vector<std::string> callsFor(View view) {
        m_host.log.clear();
        show(std::move(view));
        return m_host.takeLog();
    }

    RecordingViewHost m_host;
    Reconciler m_reconciler{m_host};
};

TEST_F(ReconcilerTest, createsControlsInOrderAndPlacesThem) {
    EXPECT_THAT(callsFor(view(VStack{}, text("a"), form({section("", {view(TextField{.text = "b"})})}))),
                ElementsAre("create 1 in 0: Text \"a\"", "create 2 in 0: ScrollView spacing=20", "create 3 in 2: Box",
                            "create 4 in 3: TextField \"b\"", "tab order", "place 1 (0,0 7x16)",
                            "place 2 (0,24 200x176)", "content 2 (0,0 200x176)", "place 3 (20,20 160x42)",
                            "place 4 (12,10 136x22)"));
    EXPECT_EQ(m_host.dump(), "Text \"a\" (0,0 7x16)\n"
                             "ScrollView spacing=20 (0,24 200x176) content=176\n"
                             "  Box (20,20 160x42)\n"
                             "    TextField \"b\" (12,10 136x22)\n");
}

TEST_F(ReconcilerTest, doesNothingWhenNothingChanged) {
    const View shown = view(VStack{}, text("a"), form({section("", {view(TextField{.text = "b"})})}),
                            view(Button{.title = "Save", .onPress = [] {}}));
    show(shown);
    m_host.typewriter.measurements = 0;
    EXPECT_THAT(callsFor(shown), IsEmpty());
    EXPECT_EQ(m_host.typewriter.measurements, 0);
}

TEST_F(ReconcilerTest, doesNothingForAnotherHandlerAndCallsTheNewOne) {
    int calls = 0;
    show(view(Button{.title = "Save", .onPress = [&] { calls += 1; }}));
    EXPECT_THAT(callsFor(view(Button{.title = "Save", .onPress = [&] { calls += 10; }})), IsEmpty());
    std::get<Button>(m_reconciler.control(1)->content).onPress();
    EXPECT_EQ(calls, 10);
}

TEST_F(ReconcilerTest, tellsOnlyWhatChanged) {
    show(view(VStack{}, text("a"), view(Toggle{}), text("b")));
    EXPECT_THAT(callsFor(view(VStack{}, text("a"), view(Toggle{.isOn = true}), text("b"))),
                ElementsAre("update 2: Toggle on"));
    EXPECT_THAT(callsFor(view(VStack{}, text("aa"), view(Toggle{.isOn = true}), text("b"))),
                ElementsAre("update 1: Text \"aa\"", "place 1 (0,0 14x16)"));
}

TEST_F(ReconcilerTest, measuresAgainOnlyWhatMayHaveAnotherSize) {
    const auto form = [](const std::string& typed, bool isOn, const std::string& caption) {
        return view(VStack{}, view(TextField{.text = typed}), view(Toggle{.isOn = isOn}),
                    view(Checkbox{.title = "c", .isOn = isOn}), view(Picker{.options = {"a", "b"}, .selection = isOn}),
                    view(Stepper{.value = isOn ? 1.0 : 0.0}), view(Button{.title = "Save", .enabled = isOn}),
                    view(Text{.text = caption, .color = isOn ? TextColor::red : TextColor::primary}));
    };
    show(form("a", false, "x"));
    m_host.typewriter.measurements = 0;
    show(form("b", true, "x"));
    EXPECT_EQ(m_host.typewriter.measurements, 0);
    show(form("b", true, "y"));
    EXPECT_EQ(m_host.typewriter.measurements, 1);
}

TEST_F(ReconcilerTest, changesOfSizeReachEverythingAroundThem) {
    show(view(VStack{.spacing = 0}, section("", {text("a")}), text("below")));
    EXPECT_THAT(callsFor(view(VStack{.spacing = 0}, section("", {text(std::string(30, 'x'))}), text("below"))),
                ElementsAre("update 2: Text \"" + std::string(30, 'x') + "\"", "place 1 (0,0 200x52)",
                            "place 2 (12,10 176x32)", "place 3 (0,52 35x16)"));
}

TEST_F(ReconcilerTest, createsAndDestroysWhatComesAndGoes) {
    show(view(VStack{}, text("a").withId("a"), text("b").withId("b")));
    EXPECT_THAT(callsFor(view(VStack{}, text("a").withId("a"))), ElementsAre("destroy 2"));
    EXPECT_THAT(callsFor(view(VStack{}, text("a").withId("a"), text("c").withId("c"))),
                ElementsAre("create 3 in 0: Text \"c\"", "place 3 (0,24 7x16)"));
}

TEST_F(ReconcilerTest, destroysWhatIsInsideFirst) {
    show(view(VStack{}, form({section("", {text("a")})})));
    EXPECT_THAT(callsFor(view(VStack{})), ElementsAre("destroy 3", "destroy 2", "destroy 1"));
    EXPECT_EQ(m_host.dump(), "");
}

TEST_F(ReconcilerTest, tellsSiblingsApartByIdentityKindAndOrder) {
    show(
        view(VStack{}, text("1").withId("a"), text("2"), text("3").withId("a"), view(Toggle{}).withId("a"), text("5")));
    // The second of identity "a" and the second without one are still those, wherever they are now.
    EXPECT_THAT(callsFor(view(VStack{}, view(Toggle{}).withId("a"), text("2"), text("5x"), text("1").withId("a"),
                              text("3x").withId("a"))),
                ::testing::IsSupersetOf({"update 5: Text \"5x\"", "update 3: Text \"3x\""}));
    EXPECT_EQ(m_host.outline(), "Toggle off\nText \"2\"\nText \"5x\"\nText \"1\"\nText \"3x\"\n");
}

TEST_F(ReconcilerTest, aControlOfAnotherKindIsAnotherControl) {
    show(view(VStack{}, view(Toggle{}).withId("x")));
    EXPECT_THAT(callsFor(view(VStack{}, view(TextField{}).withId("x"))),
                ElementsAre("destroy 1", "create 2 in 0: TextField \"\"", "tab order", "place 2 (0,0 200x22)"));
}

TEST_F(ReconcilerTest, aWholeViewOfAnotherKindReplacesAllControls) {
    show(progressView("Loading"));
    show(form({text("a")}));
    EXPECT_EQ(m_host.outline(), "ScrollView spacing=20\n  Text \"a\"\n");
}

TEST_F(ReconcilerTest, movesControlsWithTheirIdentity) {
    const auto rows = [](const std::string& ids) {
        std::vector<View> children;
        for (const char c : ids) {
            children.push_back(view(TextField{.text = std::string(1, c)}).withId(std::string(1, c)));
        }
        return viewOf(VStack{.spacing = 0}, std::move(children));
    };
    show(rows("abc"));
    EXPECT_THAT(callsFor(rows("cab")), ElementsAre("arrange 0", "tab order", "place 3 (0,0 200x22)",
                                                   "place 1 (0,22 200x22)", "place 2 (0,44 200x22)"));
    EXPECT_EQ(m_host.outline(), "TextField \"c\"\nTextField \"a\"\nTextField \"b\"\n");
    EXPECT_THAT(m_host.tabOrder, ElementsAre(3, 1, 2));
    // One gone at the front, one new in the middle.
    EXPECT_THAT(callsFor(rows("axb")), ElementsAre("destroy 3", "create 4 in 0: TextField \"x\"", "arrange 0",
                                                   "tab order", "place 1 (0,0 200x22)", "place 4 (0,22 200x22)"));
}

TEST_F(ReconcilerTest, aControlKeepsItsPlaceWhenOthersOfOtherKindsComeAndGoAroundIt) {
    show(view(VStack{}, view(TextField{.text = "x"})));
    show(view(VStack{}, text("edited"), view(TextField{.text = "x"}), text("error"), view(Button{.title = "Reset"})));
    EXPECT_EQ(m_host.find("TextField"), 1U);
    show(view(VStack{}, view(TextField{.text = "x"})));
    EXPECT_EQ(m_host.find("TextField"), 1U);
}

TEST_F(ReconcilerTest, equalIdentitiesAreToldApartByTheirOrder) {
    const auto rows = [](const std::string& first, const std::string& second) {
        return view(VStack{}, view(TextField{.text = first}).withId("same"),
                    view(TextField{.text = second}).withId("same"));
    };
    show(rows("a", "b"));
    EXPECT_THAT(callsFor(rows("a", "c")), ElementsAre("update 2: TextField \"c\""));
}

TEST_F(ReconcilerTest, whatMovesBetweenContainersIsMadeAnew) {
    show(view(VStack{}, section("", {view(TextField{}).withId("a")})));
    show(view(VStack{}, view(TextField{}).withId("a"), section("", {text("b")})));
    EXPECT_EQ(m_host.outline(), "TextField \"\"\nBox\n  Text \"b\"\n");
}

TEST_F(ReconcilerTest, theTabOrderFollowsTheRowsAndHoldsOnlyWhatTakesKeys) {
    show(view(VStack{}, text("a"), form({section("", {view(TextField{}), view(Toggle{}), view(Stepper{})})}),
              view(HStack{}, view(Spacer{}), view(Picker{}), view(Checkbox{}), view(TextEditor{}), view(Button{})),
              view(Symbol{}), view(Divider{})));
    std::vector<std::string> kinds;
    for (const ControlId id : m_host.tabOrder) {
        const std::string line = dump(m_host.control(id));
        kinds.push_back(line.substr(0, line.find_first_of(" \n")));
    }
    EXPECT_THAT(kinds, ElementsAre("TextField", "Toggle", "Stepper", "Picker", "Checkbox", "TextEditor", "Button"));
}

TEST_F(ReconcilerTest, theTabOrderIsToldAgainOnlyWhenItChanges) {
    show(view(VStack{}, view(TextField{})));
    EXPECT_THAT(callsFor(view(VStack{}, view(TextField{}), text("error"))),
                ElementsAre("create 2 in 0: Text \"error\"", "place 2 (0,30 35x16)"));
}

TEST_F(ReconcilerTest, anotherWindowSizePlacesOnlyWhatMoves) {
    show(view(HStack{}, text("a"), view(Spacer{}), view(Button{.title = "b"})));
    m_host.log.clear();
    m_reconciler.layOut({300, 200});
    EXPECT_THAT(m_host.takeLog(), ElementsAre("place 2 (269,88 31x24)"));
}

TEST_F(ReconcilerTest, knowsWhereAViewLiesInItsScrollView) {
    show(view(VStack{.spacing = 0}, text("above"),
              form({section("A", {text("a")}), section("B", {text("b"), view(VStack{}, text("c")).withId("row")})})));
    const auto place = m_reconciler.placeOf("row");
    ASSERT_TRUE(place.has_value());
    EXPECT_EQ(place->scrollView, m_host.find("ScrollView"));
    EXPECT_EQ(place->area, (Rect{32, 175, 7, 16}));
    EXPECT_FALSE(m_reconciler.placeOf("nowhere").has_value());
}

TEST_F(ReconcilerTest, aViewOutsideOfScrollViewsHasNoPlaceInOne) {
    show(view(VStack{}, text("a").withId("a")));
    EXPECT_FALSE(m_reconciler.placeOf("a").has_value());
}

// Texts that are being edited

View field(const std::string& characters) {
    return view(TextField{.text = characters});
}

TEST_F(ReconcilerTest, aTextThatTheModelDidNotTakeStaysWhileItIsEdited) {
    show(field("30"));
    m_host.type(1, "30x");
    EXPECT_TRUE(m_reconciler.noteTyped(1, "30x", "30x"));
    show(field("30"));
    m_reconciler.settle();
    EXPECT_THAT(callsFor(field("30")), IsEmpty());
    EXPECT_EQ(m_host.text(1), "30x");
    m_reconciler.endEditing(1);
    EXPECT_EQ(m_host.text(1), "30");
}

TEST_F(ReconcilerTest, whatAKeystrokeBroughtAboutDoesNotReplaceIt) {
    show(field("4"));
    m_host.type(1, "4.0");
    EXPECT_TRUE(m_reconciler.noteTyped(1, "4.0", "4.0"));
    show(field("4"));
    m_reconciler.settle();
    m_host.type(1, "4.50");
    EXPECT_TRUE(m_reconciler.noteTyped(1, "4.50", "4.50"));
    show(field("4.5"));
    m_reconciler.settle();
    EXPECT_THAT(callsFor(field("4.5")), IsEmpty());
    EXPECT_EQ(m_host.text(1), "4.50");
    m_reconciler.endEditing(1);
    EXPECT_EQ(m_host.text(1), "4.5");
}

TEST_F(ReconcilerTest, anotherChangeOfTheModelReplacesTheTextEvenWhileItIsEdited) {
    show(field("30"));
    m_host.type(1, "30x");
    EXPECT_TRUE(m_reconciler.noteTyped(1, "30x", "30x"));
    show(field("30"));
    m_reconciler.settle();
    EXPECT_THAT(callsFor(field("31")), ElementsAre("update 1: TextField \"31\""));
}

TEST_F(ReconcilerTest, theTextIsTheViewsAgainOnceEditingEnds) {
    show(field("30"));
    m_reconciler.beginEditing(1);
    m_reconciler.endEditing(1);
    EXPECT_THAT(callsFor(field("31")), ElementsAre("update 1: TextField \"31\""));
}

TEST_F(ReconcilerTest, otherPropertiesChangeWhileTheTextStays) {
    show(field("30"));
    m_host.type(1, "30x");
    EXPECT_TRUE(m_reconciler.noteTyped(1, "30x", "30x"));
    m_reconciler.settle();
    EXPECT_THAT(callsFor(field("30").withAccessibility("Warn", "Must be a number")),
                ElementsAre("update 1: TextField \"30x\" label=\"Warn\" description=\"Must be a number\""));
}

TEST_F(ReconcilerTest, puttingTheTextBackKeepsTheEditing) {
    show(field("30"));
    m_host.type(1, "30x");
    EXPECT_TRUE(m_reconciler.noteTyped(1, "30x", "30x"));
    m_reconciler.settle();
    m_reconciler.reapplyEditedText();
    EXPECT_EQ(m_host.text(1), "30");
    m_host.type(1, "301");
    EXPECT_TRUE(m_reconciler.noteTyped(1, "301", "301"));
    show(field("301"));
    m_reconciler.settle();
    EXPECT_EQ(m_host.text(1), "301");
}

TEST_F(ReconcilerTest, aTextThatIsShownAnywayWasNotTyped) {
    show(field("30"));
    EXPECT_FALSE(m_reconciler.noteTyped(1, "30", "30"));
    EXPECT_FALSE(m_reconciler.noteTyped(99, "x", "x"));
}

TEST_F(ReconcilerTest, anEditorsTextIsThePersonsToo) {
    show(view(TextEditor{.text = "a"}));
    m_host.type(1, "  ");
    EXPECT_TRUE(m_reconciler.noteTyped(1, "  ", "  "));
    show(view(TextEditor{.text = ""}));
    m_reconciler.settle();
    EXPECT_EQ(m_host.text(1), "  ");
    m_reconciler.endEditing(1);
    EXPECT_EQ(m_host.text(1), "");
}

TEST_F(ReconcilerTest, aDestroyedControlIsNoLongerEdited) {
    show(field("a"));
    m_reconciler.beginEditing(1);
    show(view(VStack{}));
    m_reconciler.reapplyEditedText();
    m_reconciler.endEditing(1);
    EXPECT_EQ(m_reconciler.control(1), nullptr);
}

} // namespace
} // namespace menubar
