#import "tests/appkit/Eyes.h"
#import "tests/appkit/SettingsScreen.h"
#import "tests/appkit/ViewHostFixture.h"

#include "MenubarApp/AppKit/AppKitStatusItem.h"
#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/WindowDriver.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

using driver::expectSeen;
using driver::expectUpToDate;
using driver::lookAtRest;
using driver::Picture;
using driver::placeInPicture;

// Controls

class WhatIsSeen : public driver::ControlsInAWindow {
protected:
    /// The model changes a control from `before` to `after`, and back.
    void change(const View::Content& before, const View::Content& after) {
        const ControlId shown = add(before);
        expectSeen(
            m_window.get(), placeInPicture(host().nativeView(shown)), [&] { update(shown, after, before); },
            [&] { update(shown, before, after); });
        host().destroy(shown);
    }
};

TEST_F(WhatIsSeen, aTextAndItsLook) {
    change(Text{.text = "60%"}, Text{.text = "61%"});
    change(Text{.text = "default", .font = Font::caption}, Text{.text = "from file", .font = Font::caption});
    change(Text{.text = "default"}, Text{.text = "default", .font = Font::headline});
    change(Text{.text = "edited"}, Text{.text = "edited", .color = TextColor::orange});
    change(Text{.text = "error", .color = TextColor::red, .selectable = true}, Text{.text = "", .selectable = true});
    change(Text{.text = "a text of more than one line, which wraps", .lineLimit = 1},
           Text{.text = "another that is cut after its first line", .lineLimit = 1});
}

TEST_F(WhatIsSeen, aSymbolAndItsTint) {
    change(Symbol{.name = "lock"}, Symbol{.name = "xmark.octagon"});
    change(Symbol{.name = "xmark.octagon"}, Symbol{.name = "xmark.octagon", .color = TextColor::red});
    change(Symbol{.name = "arrow.clockwise"}, Symbol{.name = "arrow.clockwise", .font = Font::caption});
}

TEST_F(WhatIsSeen, aButton) {
    change(Button{.title = "Save"}, Button{.title = "Saved"});
    change(Button{.title = "Save"}, Button{.title = "Save", .enabled = false});
    change(Button{.title = "Add", .style = ButtonStyle::borderless},
           Button{.title = "Add", .symbol = "plus.circle", .style = ButtonStyle::borderless});
    change(Button{.symbol = "minus.circle", .style = ButtonStyle::borderless},
           Button{.symbol = "minus.circle", .style = ButtonStyle::borderless, .enabled = false});
    change(Button{.title = "Reset", .style = ButtonStyle::small}, Button{.title = "Reset"});
}

TEST_F(WhatIsSeen, aSwitch) {
    change(Toggle{}, Toggle{.isOn = true});
    change(Toggle{.isOn = true}, Toggle{.isOn = true, .enabled = false});
}

TEST_F(WhatIsSeen, aCheckbox) {
    change(Checkbox{.title = "red"}, Checkbox{.title = "red", .isOn = true});
    change(Checkbox{.title = "red"}, Checkbox{.title = "green"});
    change(Checkbox{.title = "red"}, Checkbox{.title = "red", .enabled = false});
}

TEST_F(WhatIsSeen, aField) {
    change(TextField{.text = "65"}, TextField{.text = "66"});
    change(TextField{.text = "65"}, TextField{.prompt = "Item 1"});
    change(TextField{.prompt = "Item 1"}, TextField{.prompt = "Item 2"});
    change(TextField{.text = "65"}, TextField{.text = "65", .enabled = false});
}

TEST_F(WhatIsSeen, linesOfText) {
    change(TextEditor{.text = "one"}, TextEditor{.text = "two\nthree"});
    change(TextEditor{.text = "one"}, TextEditor{.text = "one", .enabled = false});
}

TEST_F(WhatIsSeen, aStepper) {
    change(Stepper{}, Stepper{.enabled = false});
}

TEST_F(WhatIsSeen, aPopUpButton) {
    change(Picker{.options = {"low", "high"}, .selection = 0}, Picker{.options = {"low", "high"}, .selection = 1});
    change(Picker{.options = {"low", "high"}, .selection = 0}, Picker{.options = {"low", "high"}});
    change(Picker{.options = {"low"}, .selection = 0}, Picker{.options = {"lowest"}, .selection = 0});
    change(Picker{.options = {"low"}, .selection = 0}, Picker{.options = {"low"}, .selection = 0, .enabled = false});
}

TEST_F(WhatIsSeen, theWheelTurns) {
    const ControlId shown = add(Spinner{});
    host().place(shown, {.x = 10, .y = 10, .width = 32, .height = 32});
    const NSRect place = placeInPicture(host().nativeView(shown));
    driver::pump(driver::milliseconds(50));
    const Picture first = driver::look(m_window.get());
    EXPECT_GT(first.inside(place).colors(), 3U);
    EXPECT_TRUE(driver::pumpUntil([&] { return driver::look(m_window.get()).inside(place) != first.inside(place); }));
}

// The settings window

class SettingsAreSeen : public testing::Test {
protected:
    void open(std::string_view config) {
        m_screen.setSchema(R"({"properties": {"warn-context": {"default": 60}, "name": {"default": "d"}},
            "x-groups": [{"id": "one", "title": "Group", "settings": [
                {"name": "warn-context", "control": "percent", "min": 1, "max": 99},
                {"name": "name", "control": "text"},
                {"name": "level", "control": "enum", "values": ["low", "high"]},
                {"name": "switch", "control": "toggle"},
                {"name": "words", "control": "list"}]}]})");
        m_screen.writeConfig(config);
        m_screen.open();
        ASSERT_TRUE(m_screen.waitToShow("Warn context"));
        m_resting = lookAtRest(window());
    }

    /// Something is seen that was not before, and nothing of before that is not.
    void expectNews() {
        m_resting = driver::lookForNews(window(), m_resting);
        expectUpToDate(window());
    }

    [[nodiscard]] NSWindow* window() const { return m_screen.window(); }

    driver::SettingsScreen m_screen;
    Picture m_resting;
};

TEST_F(SettingsAreSeen, aStepIsSeenInItsField) {
    open(R"({"warn-context":65})");
    auto* field = m_screen.field("Warn context");
    const NSRect place = placeInPicture(field);
    const Picture before = lookAtRest(window()).inside(place);
    auto* stepper = static_cast<NSStepper*>(m_screen.control("Warn context", [NSStepper class]));
    [stepper setDoubleValue:1.0];
    [stepper sendAction:[stepper action] to:[stepper target]];
    expectNews();
    EXPECT_FALSE(m_resting.inside(place) == before);
}

TEST_F(SettingsAreSeen, aResetIsSeen) {
    open(R"({"name":"old"})");
    m_screen.press("Reset to default");
    expectNews();
}

TEST_F(SettingsAreSeen, aFormFollowsItsFileInSight) {
    open(R"({"warn-context":65,"name":"old","level":"low","switch":false,"words":["a"]})");
    m_screen.writeConfig(R"({"warn-context":70,"name":"new","level":"high","switch":true,"words":["b"]})");
    ASSERT_TRUE(driver::pumpUntil([&] {
        m_screen.poll(nullptr);
        return m_screen.text("Name") == "new";
    }));
    expectNews();
}

TEST_F(SettingsAreSeen, whatTheDaemonSaysIsSeen) {
    open("{}");
    StatusFile status;
    status.config = OstrelConfig{.settings = JSONValue::Object{{"warn-context", JSONValue(60.0)}}};
    m_screen.poll(&status);
    ASSERT_TRUE(m_screen.waitToShow("Daemon is running with: 60"));
    expectNews();
    (*status.config->settings)["warn-context"] = JSONValue(61.0);
    m_screen.poll(&status);
    ASSERT_TRUE(m_screen.waitToShow("Daemon is running with: 61"));
    expectNews();
    m_screen.poll(nullptr);
    ASSERT_TRUE(driver::pumpUntil([&] { return !m_screen.shows("Daemon is running with"); }));
    expectNews();
}

TEST_F(SettingsAreSeen, errorsBannersAndTheStatusLineAreSeen) {
    open(R"({"warn-context":65})");
    m_screen.setVerdict(1, R"({"ok":false,"errors":[{"options":["name"],"message":"no"},{"message":"nor so"}]})");
    m_screen.type("Name", "x");
    [window() makeFirstResponder:nil];
    expectNews();
    m_screen.press("Save");
    ASSERT_TRUE(m_screen.waitToShow("The daemon rejected the file"));
    expectNews();
    m_screen.writeConfig(R"({"warn-context":66})");
    ASSERT_TRUE(driver::pumpUntil([&] {
        m_screen.poll(nullptr);
        return m_screen.shows("Another program has changed");
    }));
    expectNews();
}

TEST_F(SettingsAreSeen, aSheetCoversTheWholeWindowAndLeavesNothingBehind) {
    m_screen.installDaemon();
    open(R"({"name":"old"})");
    m_screen.poll(nullptr);
    m_screen.press("Reset to default");
    m_screen.press("Save");
    ASSERT_TRUE(driver::pumpUntil([&] { return !driver::alertButtons(window()).empty(); }));
    driver::clickAlertButton(window(), 1);
    m_resting = {};
    expectNews();
}

// The menu bar

const StatusItemPresentation quiet = {
    .symbolName = "eye", .title = "72%", .tone = StatusItemPresentation::Tone::ok, .tooltip = ""};

TEST(TheStatusItemIsSeen, inEachOfItsParts) {
    AppKitStatusItem item;
    item.apply(quiet);
    const auto isListed = [&] { return item.readVisibility().width.has_value(); };
    if (!driver::pumpUntil(isListed, driver::milliseconds(5000))) {
        GTEST_SKIP() << "this system shows the item in another process's window, which is not for us to look at";
    }
    const auto change = [&](const StatusItemPresentation& other) {
        item.apply(quiet);
        NSWindow* window = [[item.nativeItem() button] window];
        NSRect whole = [window frame];
        whole.origin = NSZeroPoint;
        expectSeen(window, whole, [&] { item.apply(other); }, [&] { item.apply(quiet); });
    };
    StatusItemPresentation other = quiet;
    other.title = "73%";
    change(other);
    other.tone = StatusItemPresentation::Tone::critical;
    change(other);
    other.symbolName = "eye.slash";
    change(other);
}

} // namespace
} // namespace menubar
