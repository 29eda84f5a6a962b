#include "MenubarApp/View/ViewPresenter.h"

#include "tests/support/RecordingViewHost.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace menubar {
namespace {

using recording::LaterQueue;
using recording::RecordingViewHost;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A small model with a view of it: a number, a note, a switch, a choice, and buttons that write down what they see.
class ViewPresenterTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_presenter = ViewPresenter::create(m_host, [this] { return body(); }, m_later.later());
    }

    void TearDown() override { EXPECT_THAT(m_host.faults, IsEmpty()); }

    View body() {
        ++m_bodies;
        return view(
            VStack{.spacing = 0},
            view(TextField{.text = std::to_string(m_number),
                           .onEdit = [this](const std::string& text) { setNumber(text); }})
                .withId("number"),
            view(TextEditor{.text = m_note, .onEdit = [this](const std::string& text) { m_note = text; }}),
            view(Toggle{
                .isOn = m_isOn, .enabled = m_enabled, .onChange = [this](bool isOn) { m_isOn = isOn && !m_refuses; }}),
            view(
                Checkbox{.title = "check", .isOn = m_isChecked, .onChange = [this](bool isOn) { m_isChecked = isOn; }}),
            view(Picker{.options = {"a", "b"},
                        .selection = m_choice,
                        .onPick = [this](std::size_t i) { m_choice = m_refuses ? m_choice : i; }}),
            view(Stepper{.value = static_cast<double>(m_number),
                         .onStep = [this](StepDirection d) { m_number += d == StepDirection::up ? 1 : -1; }}),
            view(Button{.title = "Save", .enabled = m_enabled, .onPress = [this] { save(); }}),
            form({section("", {view(Text{.text = m_caption}).withId("row")})}));
    }

    /// As a number field does: what is no number leaves the model alone.
    void setNumber(const std::string& text) {
        if (!text.empty() && text.find_first_not_of("0123456789") == std::string::npos) {
            m_number = std::stoi(text);
        }
    }

    void save() { m_saved.push_back(std::to_string(m_number) + "/" + m_note + "/" + m_host.text(number())); }

    [[nodiscard]] ControlId number() const { return m_host.find("TextField"); }

    [[nodiscard]] ControlId note() const { return m_host.find("TextEditor"); }

    int m_number = 30;
    std::string m_note;
    bool m_isOn = false;
    bool m_isChecked = false;
    std::size_t m_choice = 0;
    bool m_refuses = false;
    bool m_enabled = true;
    std::string m_caption = "caption";
    std::vector<std::string> m_saved;
    int m_bodies = 0;

    RecordingViewHost m_host;
    LaterQueue m_later;
    std::shared_ptr<ViewPresenter> m_presenter;
};

TEST_F(ViewPresenterTest, showsTheViewInTheRoomThatTheHostHas) {
    EXPECT_EQ(m_bodies, 1);
    EXPECT_EQ(m_host.frame(m_host.find("ScrollView")).width, 680);
}

TEST_F(ViewPresenterTest, followsTheWindowsSizeWithoutWritingTheViewAgain) {
    m_host.resize({520, 420});
    EXPECT_EQ(m_host.frame(m_host.find("ScrollView")).width, 520);
    m_host.resize({1600, 1000});
    EXPECT_EQ(m_host.frame(m_host.find("ScrollView")).width, 1600);
    EXPECT_EQ(m_bodies, 1);
}

TEST_F(ViewPresenterTest, writesTheViewOnceForManyChangesOfTheModel) {
    for (int i = 0; i < 10; ++i) {
        m_presenter->setNeedsRender();
    }
    m_caption = "changed";
    EXPECT_EQ(m_bodies, 1);
    m_later.run();
    EXPECT_EQ(m_bodies, 2);
    EXPECT_NE(m_host.find("Text \"changed\""), windowContent);
    EXPECT_TRUE(m_later.actions.empty());
    m_presenter->setNeedsRender();
    m_later.run();
    EXPECT_EQ(m_bodies, 3);
}

TEST_F(ViewPresenterTest, aChangeThatAnEventAlreadyShowedIsNotShownAgain) {
    m_presenter->setNeedsRender();
    m_host.press("Save");
    EXPECT_EQ(m_bodies, 2);
    m_later.run();
    EXPECT_EQ(m_bodies, 2);
}

TEST_F(ViewPresenterTest, aPresenterThatIsGoneIsNotAskedLater) {
    m_presenter->setNeedsRender();
    m_presenter.reset();
    m_later.run();
    EXPECT_EQ(m_bodies, 1);
}

// Events

TEST_F(ViewPresenterTest, routesEachKindOfEventToItsHandler) {
    m_host.toggle(m_host.find("Toggle"), true);
    m_host.toggle(m_host.find("Checkbox"), true);
    m_host.pick(m_host.find("Picker"), 1);
    m_host.step(m_host.find("Stepper"), StepDirection::up);
    m_host.type(note(), "hello");
    EXPECT_TRUE(m_host.press("Save"));
    EXPECT_TRUE(m_isOn);
    EXPECT_TRUE(m_isChecked);
    EXPECT_EQ(m_choice, 1U);
    EXPECT_THAT(m_saved, ElementsAre("31/hello/31"));
    m_host.step(m_host.find("Stepper"), StepDirection::down);
    m_host.toggle(m_host.find("Toggle"), false);
    EXPECT_EQ(m_number, 30);
    EXPECT_FALSE(m_isOn);
}

TEST_F(ViewPresenterTest, showsWhatAnEventBroughtAboutAtOnce) {
    m_host.step(m_host.find("Stepper"), StepDirection::up);
    EXPECT_EQ(m_host.text(number()), "31");
}

TEST_F(ViewPresenterTest, aChangeThatTheModelRefusesGoesBack) {
    m_refuses = true;
    m_host.toggle(m_host.find("Toggle"), true);
    EXPECT_NE(m_host.find("Toggle off"), windowContent);
    m_host.pick(m_host.find("Picker"), 1);
    EXPECT_NE(m_host.find("Picker *\"a\" \"b\""), windowContent);
}

TEST_F(ViewPresenterTest, aDisabledControlDoesNothing) {
    m_enabled = false;
    m_presenter->setNeedsRender();
    m_later.run();
    const ControlId save = m_host.find("Button \"Save\" disabled");
    ASSERT_NE(save, windowContent);
    m_host.press(save);
    m_presenter->toggled(m_host.find("Toggle"), true);
    EXPECT_THAT(m_saved, IsEmpty());
    EXPECT_FALSE(m_isOn);
}

TEST_F(ViewPresenterTest, eventsForAControlThatIsGoneOrOfAnotherKindAreIgnored) {
    m_presenter->pressed(999);
    m_presenter->pressed(number());
    m_presenter->toggled(number(), true);
    m_presenter->picked(number(), 0);
    m_presenter->picked(m_host.find("Picker"), 2);
    m_presenter->stepped(number(), StepDirection::up);
    m_presenter->textChanged(m_host.find("Toggle"), "x");
    m_presenter->editingBegan(999);
    m_presenter->editingEnded(999);
    EXPECT_EQ(m_bodies, 1);
}

TEST_F(ViewPresenterTest, callsTheHandlerOfTheViewAsItIsNow) {
    m_number = 50;
    m_presenter->setNeedsRender();
    m_later.run();
    m_host.step(m_host.find("Stepper"), StepDirection::up);
    EXPECT_EQ(m_number, 51);
}

// Text

TEST_F(ViewPresenterTest, everyKeystrokeGoesIntoTheModelAtOnce) {
    m_host.type(number(), "3");
    EXPECT_EQ(m_number, 3);
    m_host.type(number(), "34");
    EXPECT_EQ(m_number, 34);
}

TEST_F(ViewPresenterTest, textThatIsNoNumberLeavesTheModelAloneAndIsPutBackWhenEditingEnds) {
    m_host.type(number(), "3x");
    EXPECT_EQ(m_number, 30);
    EXPECT_EQ(m_host.text(number()), "3x");
    m_host.blur();
    EXPECT_EQ(m_host.text(number()), "30");
}

TEST_F(ViewPresenterTest, focusAndHalfTypedTextStayThroughAHundredUpdates) {
    m_host.type(number(), "4x");
    m_host.log.clear();
    for (int i = 0; i < 100; ++i) {
        m_caption = "caption " + std::to_string(i);
        m_presenter->setNeedsRender();
        m_later.run();
    }
    EXPECT_EQ(m_host.text(number()), "4x");
    EXPECT_EQ(m_host.focused, number());
    const std::string field = std::to_string(number());
    for (const std::string& call : m_host.log) {
        EXPECT_FALSE(call.starts_with("update " + field + ":") || call.starts_with("destroy")) << call;
    }
    m_host.type(number(), "45");
    EXPECT_EQ(m_number, 45);
}

TEST_F(ViewPresenterTest, steppingReplacesHalfTypedText) {
    m_host.type(number(), "3x");
    m_host.step(m_host.find("Stepper"), StepDirection::up);
    EXPECT_EQ(m_host.text(number()), "31");
    EXPECT_EQ(m_host.focused, number());
}

TEST_F(ViewPresenterTest, beforeAButtonActsPendingTextIsCommitted) {
    m_host.compose(note(), "にほん");
    EXPECT_EQ(m_note, "");
    m_host.press("Save");
    EXPECT_THAT(m_saved, ElementsAre("30/にほん/30"));
}

TEST_F(ViewPresenterTest, beforeAButtonActsTextThatTheModelDidNotTakeIsPutBack) {
    m_host.type(number(), "3x");
    m_host.press("Save");
    EXPECT_THAT(m_saved, ElementsAre("30//30"));
    EXPECT_EQ(m_host.focused, number());
}

TEST_F(ViewPresenterTest, aButtonThatTheCommittedTextDisablesDoesNotAct) {
    RecordingViewHost host;
    std::string note;
    int presses = 0;
    const auto presenter = ViewPresenter::create(
        host,
        [&] {
            return view(VStack{},
                        view(TextField{.text = note, .onEdit = [&](const std::string& text) { note = text; }}),
                        view(Button{.title = "Go", .enabled = note.empty(), .onPress = [&] { ++presses; }}));
        },
        m_later.later());
    host.compose(host.find("TextField"), "invalid");
    EXPECT_TRUE(host.press("Go"));
    EXPECT_EQ(note, "invalid");
    EXPECT_EQ(presses, 0);
    EXPECT_THAT(host.faults, IsEmpty());
}

TEST_F(ViewPresenterTest, committingFromOutsideDoesTheSame) {
    m_host.type(number(), "3x");
    m_presenter->commitEditing();
    EXPECT_EQ(m_host.text(number()), "30");
}

// Scrolling to something

TEST_F(ViewPresenterTest, scrollsToAViewAsTheModelHasItNow) {
    m_caption = "now";
    m_host.log.clear();
    EXPECT_TRUE(m_presenter->scrollToVisible("row"));
    EXPECT_NE(m_host.find("Text \"now\""), windowContent);
    EXPECT_EQ(m_host.log.back(), "scroll " + std::to_string(m_host.find("ScrollView")) + " to (32,30 21x16)");
    EXPECT_FALSE(m_presenter->scrollToVisible("nowhere"));
    EXPECT_FALSE(m_presenter->scrollToVisible("number"));
}

// The end of the window

TEST_F(ViewPresenterTest, aButtonMayCloseTheWindow) {
    RecordingViewHost host;
    std::shared_ptr<ViewPresenter> presenter;
    presenter = ViewPresenter::create(
        host,
        [&] {
            return view(VStack{}, view(Button{.title = "Close", .onPress = [&] {
                                                  presenter->close();
                                                  presenter.reset();
                                              }}));
        },
        m_later.later());
    host.log.clear();
    EXPECT_TRUE(host.press("Close"));
    EXPECT_EQ(presenter, nullptr);
    EXPECT_THAT(host.log, ElementsAre("commit"));
}

TEST_F(ViewPresenterTest, afterTheWindowClosedNothingHappens) {
    m_presenter->setNeedsRender();
    m_presenter->close();
    m_host.log.clear();
    m_later.run();
    m_presenter->setNeedsRender();
    m_host.resize({100, 100});
    m_host.press("Save");
    m_host.type(number(), "5");
    m_host.blur();
    m_presenter->commitEditing();
    EXPECT_FALSE(m_presenter->scrollToVisible("row"));
    EXPECT_THAT(m_host.log, IsEmpty());
    EXPECT_THAT(m_saved, IsEmpty());
    EXPECT_EQ(m_bodies, 1);
    EXPECT_TRUE(m_later.actions.empty());
}

/// A toolkit talks back while it is told something.
TEST_F(ViewPresenterTest, aFocusedControlMayBeDestroyedWhileItIsEdited) {
    RecordingViewHost host;
    bool hasField = true;
    const auto presenter = ViewPresenter::create(
        host, [&] { return hasField ? view(VStack{}, view(TextField{})) : view(VStack{}, view(Text{.text = "gone"})); },
        m_later.later());
    host.type(host.find("TextField"), "half");
    hasField = false;
    presenter->setNeedsRender();
    m_later.run();
    EXPECT_EQ(host.outline(), "Text \"gone\"\n");
    EXPECT_FALSE(host.focused.has_value());
    EXPECT_THAT(host.faults, IsEmpty());
}

// What a person sees of an edit

TEST_F(ViewPresenterTest, aLineBreakBecomesABlankInAFieldAndStaysInAnEditor) {
    std::string typed;
    const auto body = [&] {
        return view(VStack{}, view(TextField{.text = typed, .onEdit = [&](const std::string& text) { typed = text; }}),
                    view(TextEditor{.onEdit = [&](const std::string& text) { m_note = text; }}));
    };
    RecordingViewHost host;
    const auto presenter = ViewPresenter::create(host, body, m_later.later());
    const ControlId field = host.find("TextField");
    host.type(field, "a\nb\r\nc\rd\u2028e\u2029f");
    EXPECT_EQ(typed, "a b c d e f");
    EXPECT_EQ(host.text(field), typed);
    host.type(host.find("TextEditor"), "a\nb");
    EXPECT_EQ(m_note, "a\nb");
    EXPECT_THAT(host.faults, IsEmpty());
}

/// Rows on a box in a window that holds four of them: an error may stand below the second, a banner above all.
class RowsTest : public ::testing::Test {
protected:
    void TearDown() override { EXPECT_THAT(m_host.faults, IsEmpty()); }

    void SetUp() override {
        m_host.size = {.width = 300, .height = 160};
        m_presenter = ViewPresenter::create(m_host, [this] { return body(); }, m_later.later());
    }

    View body() {
        std::vector<View> rows;
        for (const char* id : {"a", "b", "c"}) {
            View row = view(VStack{}, view(TextField{.onEdit = [this](const std::string& text) { m_typed = text; }})
                                          .withAccessibility(id))
                           .withId(id);
            if (row.id == "b" && m_typed == "bad") {
                row.children.push_back(view(Text{.text = std::string(m_errorLines * 10, 'e')}).withWidth(70));
            }
            rows.push_back(std::move(row));
        }
        std::vector<View> sections;
        if (m_hasBanner) {
            sections.push_back(section("", {view(Text{.text = "banner"})}).withId("banner"));
        }
        sections.push_back(section("", std::move(rows)).withId("rows"));
        return form(std::move(sections));
    }

    [[nodiscard]] std::vector<std::string> scrolls() {
        std::vector<std::string> result = m_host.takeLog();
        std::erase_if(result, [](const std::string& call) { return !call.starts_with("scroll"); });
        return result;
    }

    std::string m_typed;
    std::size_t m_errorLines = 1;
    bool m_hasBanner = false;
    RecordingViewHost m_host;
    LaterQueue m_later;
    std::shared_ptr<ViewPresenter> m_presenter;
};

TEST_F(RowsTest, anErrorThatAnEditBringsIsShownWithItsWholeRow) {
    m_host.type(m_host.find("TextField", "b"), "bad");
    EXPECT_THAT(scrolls(), ElementsAre("scroll 1 to (32,73 236x46)"));
    m_host.type(m_host.find("TextField", "b"), "good");
    EXPECT_THAT(scrolls(), IsEmpty()) << "a row that shrinks is in sight already";
}

TEST_F(RowsTest, aRowThatIsHigherThanItsRoomIsNotScrolledAwayFromTheHands) {
    m_errorLines = 20;
    m_host.type(m_host.find("TextField", "b"), "bad");
    EXPECT_THAT(scrolls(), IsEmpty());
}

TEST_F(RowsTest, whatComesAndGoesAboveMovesNothingUnderTheHands) {
    m_host.type(m_host.find("TextField", "c"), "x");
    m_host.log.clear();
    m_hasBanner = true;
    m_presenter->setNeedsRender();
    m_later.run();
    EXPECT_THAT(scrolls(), ElementsAre("scroll 1 by 56"));
    m_hasBanner = false;
    m_presenter->setNeedsRender();
    m_later.run();
    EXPECT_THAT(scrolls(), ElementsAre("scroll 1 by -56"));
}

TEST_F(RowsTest, withoutAnEditNothingIsScrolled) {
    m_hasBanner = true;
    m_presenter->setNeedsRender();
    m_later.run();
    EXPECT_THAT(scrolls(), IsEmpty());
}

} // namespace
} // namespace menubar
