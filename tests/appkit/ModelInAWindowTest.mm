#import "tests/appkit/ViewHostFixture.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/View/View.h"
#include "MenubarApp/View/ViewPresenter.h"

#include "tests/support/RecordingViewHost.h"

#include <memory>
#include <string>

namespace menubar {
namespace {

/// A number that takes any text which is one, a note, and a switch that is never allowed on.
struct Model {
    std::string number = "5";
    std::string note;
    int revision = 0;

    [[nodiscard]] View body() {
        auto setNumber = [this](const std::string& typed) {
            if (!typed.empty() && typed.find_first_not_of("0123456789") == std::string::npos) {
                number = typed;
            }
        };
        auto setNote = [this](const std::string& typed) { note = typed; };
        return view(
            VStack{}, view(Text{.text = "Revision " + std::to_string(revision)}),
            view(TextField{.text = number, .onEdit = setNumber}).withId("number"),
            view(TextEditor{.text = note, .onEdit = setNote}).withId("note"), view(Toggle{}),
            view(Button{.title = "Save", .shortcut = KeyShortcut::commandS, .onPress = [this] { ++revision; }}));
    }
};

class ModelInAWindow : public driver::ControlsInAWindow {
  protected:
    ModelInAWindow() : m_presenter(ViewPresenter::create(host(), [this] { return m_model.body(); }, m_queue.later())) {}

    ~ModelInAWindow() override { m_presenter->close(); }

    void changeModel() {
        ++m_model.revision;
        m_presenter->setNeedsRender();
        m_queue.run();
    }

    [[nodiscard]] NSTextField* field() const { return native<NSTextField>(numberId); }

    /// In the order in which they are made.
    static constexpr ControlId numberId = 2;
    static constexpr ControlId noteId = 3;
    static constexpr ControlId toggleId = 4;

    Model m_model;
    recording::LaterQueue m_queue;
    std::shared_ptr<ViewPresenter> m_presenter;
};

TEST_F(ModelInAWindow, keepsWhatIsHalfTypedOverAHundredChanges) {
    [m_window.get() makeFirstResponder:field()];
    [editor() setSelectedRange:NSMakeRange(1, 0)];
    type("x7");
    for (int i = 0; i < 100; ++i) {
        changeModel();
    }
    EXPECT_EQ(toString([editor() string]), "5x7");
    EXPECT_EQ([editor() selectedRange].location, 3U);
    EXPECT_EQ(m_model.number, "5");
    [[editor() undoManager] undo];
    EXPECT_NE(toString([editor() string]), "5x7") << "the history is still there";
}

TEST_F(ModelInAWindow, putsBackWhatIsNoNumberWhenEditingEnds) {
    [m_window.get() makeFirstResponder:field()];
    [editor() setSelectedRange:NSMakeRange(1, 0)];
    type("x");
    [m_window.get() makeFirstResponder:nil];
    EXPECT_EQ(toString([field() stringValue]), "5");
    [m_window.get() makeFirstResponder:field()];
    [editor() setSelectedRange:NSMakeRange(1, 0)];
    type("y\r");
    EXPECT_EQ(toString([editor() string]), "5") << "by Return";
    type("12z");
    key('\t');
    EXPECT_EQ(toString([field() stringValue]), "12") << "by Tab; Return had selected everything";
    EXPECT_EQ(m_model.number, "12");
}

TEST_F(ModelInAWindow, commitsPendingTextBeforeAButtonActs) {
    [m_window.get() makeFirstResponder:field()];
    [editor() setSelectedRange:NSMakeRange(1, 0)];
    type("x");
    key('s', NSEventModifierFlagCommand);
    EXPECT_EQ(m_model.revision, 1);
    EXPECT_EQ(toString([editor() string]), "5");
    EXPECT_EQ([editor() selectedRange].location, 1U);
}

TEST_F(ModelInAWindow, aSwitchGoesBackToWhatTheModelAllows) {
    auto* toggle = native<NSSwitch>(toggleId);
    [toggle performClick:nil];
    EXPECT_EQ([toggle state], static_cast<NSControlStateValue>(NSControlStateValueOff));
}

TEST_F(ModelInAWindow, whatIsTypedWhileTheModelChangesGoesIntoTheModel) {
    [m_window.get() makeFirstResponder:host().keyView(noteId)];
    for (int i = 0; i < 10; ++i) {
        type("a");
        changeModel();
    }
    EXPECT_EQ(m_model.note, "aaaaaaaaaa");
    EXPECT_EQ(toString([editor() string]), "aaaaaaaaaa");
}

TEST_F(ModelInAWindow, aFieldWhoseModelChangesToSomethingElseShowsThat) {
    [m_window.get() makeFirstResponder:field()];
    [editor() setSelectedRange:NSMakeRange(1, 0)];
    m_model.number = "56";
    changeModel();
    EXPECT_EQ(toString([editor() string]), "56");
    EXPECT_EQ([editor() selectedRange].location, 1U) << "behind what it was behind";
}

TEST_F(ModelInAWindow, followsTheWindowsWidth) {
    const double before = NSWidth([field() frame]);
    NSRect frame = [m_window.get() frame];
    frame.size.width += 100;
    [m_window.get() setFrame:frame display:YES];
    EXPECT_EQ(NSWidth([field() frame]), before + 100);
}

} // namespace
} // namespace menubar
