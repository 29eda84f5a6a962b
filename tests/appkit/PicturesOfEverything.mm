// Every control in every state, and every screen, to be looked at: nothing is asserted here, so it is no part of the
// tests. scripts/pictures makes a page of them.
#import "tests/appkit/Eyes.h"
#import "tests/appkit/MenuDriver.h"
#import "tests/appkit/SettingsScreen.h"
#import "tests/appkit/ViewHostFixture.h"
#import "tests/appkit/WindowFixture.h"

#include "MenubarApp/View/View.h"
#include "MenubarApp/View/ViewPresenter.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/WindowDriver.h"
#include "tests/support/RecordingViewHost.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

void take(NSWindow* window, const std::string& name) {
    const char* folder = std::getenv("MENUBAR_PICTURES");
    ASSERT_NE(folder, nullptr) << "run scripts/pictures";
    driver::pump(driver::milliseconds(150)); // what moves never comes to rest
    driver::save(driver::look(window), std::string(folder) + "/" + name + ".png");
}

/// Once it is on the screen.
void takeMenu(const std::string& name) {
    for (NSWindow* window in [NSApp windows]) {
        if ([window level] == NSPopUpMenuWindowLevel && [window isVisible]) {
            driver::save(driver::look(window), std::string(std::getenv("MENUBAR_PICTURES")) + "/" + name + ".png");
        }
    }
}

/// The framework's word for what runs only on request.
class DISABLED_Pictures : public driver::ControlsInAWindow {
protected:
    void show(const std::string& name, const std::vector<View>& rows, double width = 600, bool isFocused = false) {
        [m_window.get() setContentSize:NSMakeSize(width, 400)];
        recording::LaterQueue queue;
        bool isOver = false;
        const auto body = [&] {
            return viewOf(VStack{.spacing = 10.0}, isOver ? std::vector<View>() : rows)
                .withPadding({.top = 16.0, .leading = 16.0, .bottom = 16.0, .trailing = 16.0});
        };
        const auto presenter = ViewPresenter::create(host(), body, queue.later());
        queue.run();
        if (isFocused) {
            [m_window.get() makeFirstResponder:[[m_content.get() subviews] firstObject]];
        }
        take(m_window.get(), name);
        isOver = true;
        presenter->setNeedsRender();
        queue.run();
        presenter->close();
    }
};

const std::string longText = "A text that goes on for much longer than anyone would care to read, with one-"
                             "unbreakableWordThatIsWiderThanTheWindowItIsShownInWhichMustBeBrokenSomewhere in it.";

std::vector<View> texts() {
    return {view(Text{.text = "Headline", .font = Font::headline}),
            view(Text{.text = "Body"}),
            view(Text{.text = "Caption in the secondary colour", .font = Font::caption, .color = TextColor::secondary}),
            view(Text{.text = "Monospaced", .font = Font::monospaced}),
            view(Text{.text = "edited", .font = Font::caption, .color = TextColor::orange}),
            label({.name = "xmark.octagon", .font = Font::caption, .color = TextColor::red},
                  {.text = "Must be a number", .font = Font::caption, .color = TextColor::red}),
            view(Text{.text = longText}),
            view(Text{.text = longText, .font = Font::caption, .lineLimit = 1})};
}

std::vector<View> symbols() {
    std::vector<View> rows;
    for (const char* name : {"exclamationmark.triangle", "xmark.octagon", "arrow.clockwise",
                             "arrow.triangle.2.circlepath", "lock", "minus.circle", "plus.circle", "eye"}) {
        rows.push_back(label({.name = name}, {.text = name}));
    }
    return rows;
}

std::vector<View> buttons(bool enabled) {
    return {view(HStack{}, view(Button{.title = "Save", .enabled = enabled}),
                 view(Button{.title = "Reset to default", .style = ButtonStyle::small, .enabled = enabled}),
                 view(Button{
                     .title = "Add", .symbol = "plus.circle", .style = ButtonStyle::borderless, .enabled = enabled}),
                 view(Button{.symbol = "minus.circle", .style = ButtonStyle::borderless, .enabled = enabled})),
            view(HStack{}, view(Toggle{.enabled = enabled}), view(Toggle{.isOn = true, .enabled = enabled})),
            view(Checkbox{.title = "off", .enabled = enabled}),
            view(Checkbox{.title = "on", .isOn = true, .enabled = enabled}),
            view(Checkbox{.title = longText, .enabled = enabled}),
            view(HStack{}, view(TextField{.text = "65", .enabled = enabled}).withWidth(140),
                 view(Stepper{.value = 5, .max = 5, .enabled = enabled})),
            view(HStack{}, view(TextField{.prompt = "Leave empty for the default", .enabled = enabled}),
                 view(Button{.title = "Choose...", .enabled = enabled})),
            view(TextField{.text = longText, .enabled = enabled}),
            view(HStack{}, view(Picker{.options = {"low", "high"}, .selection = 0, .enabled = enabled}),
                 view(Picker{.options = {"none of these"}, .enabled = enabled})),
            view(TextEditor{.text = "one\ntwo\n" + longText, .enabled = enabled})};
}

TEST_F(DISABLED_Pictures, Controls) {
    show("texts", texts());
    show("texts-narrow", texts(), 240);
    show("symbols", symbols());
    show("controls", buttons(true));
    show("controls-disabled", buttons(false));
    show("controls-narrow", buttons(true), 260);
    show("busy", {progressView("Loading settings from the daemon")});
}

TEST_F(DISABLED_Pictures, Focus) {
    show("focus-button", {view(Button{.title = "Save"})}, 300, true);
    show("focus-switch", {view(Toggle{.isOn = true})}, 300, true);
    show("focus-checkbox", {view(Checkbox{.title = "red"})}, 300, true);
    show("focus-field", {view(TextField{.text = "65"})}, 300, true);
    show("focus-stepper", {view(Stepper{})}, 300, true);
    show("focus-picker", {view(Picker{.options = {"low", "high"}, .selection = 0U})}, 300, true);
}

TEST(DISABLED_Screens, Settings) {
    driver::SettingsScreen screen;
    screen.installDaemon();
    screen.writeConfig(R"({"text":"new","number":5,"words":["one","TWO"],"members":["red"],"unknown":1})");
    screen.open();
    screen.poll(nullptr);
    take(screen.window(), "settings");
    screen.type("Number", "200");
    StatusFile status;
    status.config = OstrelConfig{.settings = JSONValue::Object{{"text", JSONValue("old")}}};
    status.configFile = ConfigFileStatus{.path = "/home/ann/.config/ostrel/config.json"};
    status.configSources = std::map<std::string, ConfigSource>{{"switch", ConfigSource::cli}};
    screen.poll(&status);
    [screen.window() makeFirstResponder:nil];
    take(screen.window(), "settings-error-and-lock");
    [screen.window() setFrame:NSMakeRect(20, 20, 520, 420) display:YES];
    take(screen.window(), "settings-narrow");
    [screen.window() setFrame:NSMakeRect(20, 20, 1200, 700) display:YES];
    take(screen.window(), "settings-wide");
}

TEST(DISABLED_Screens, Help) {
    driver::SettingsScreen screen;
    screen.writeConfig(R"({"text":"new"})");
    screen.open();
    NSButton* reset = screen.button("Reset to default");
    [NSApp postEvent:[NSEvent mouseEventWithType:NSEventTypeMouseMoved
                                        location:[reset convertPoint:NSMakePoint(9, 9) toView:nil]
                                   modifierFlags:0
                                       timestamp:0
                                    windowNumber:[screen.window() windowNumber]
                                         context:nil
                                     eventNumber:0
                                      clickCount:0
                                        pressure:0]
             atStart:NO];
    driver::pump(driver::milliseconds(1200));
    for (NSWindow* window in [NSApp windows]) {
        if ([window isVisible] && [window level] == NSScreenSaverWindowLevel) {
            take(window, "help");
        }
    }
}

TEST(DISABLED_Screens, OpenPanel) {
    driver::SettingsScreen screen;
    screen.open();
    bool isTaken = false;
    const auto hand = ObjCPointer<PanelHand>::adopt([[PanelHand alloc] initWithAct:[&](NSOpenPanel* panel) {
        driver::save(driver::look(panel), std::string(std::getenv("MENUBAR_PICTURES")) + "/open-panel.png");
        isTaken = true;
        [panel cancel:nil];
    }]);
    screen.press("Choose...");
    (void)driver::pumpUntil([&] { return isTaken; });
    [hand.get() stop];
}

TEST(DISABLED_Screens, SettingsSaving) {
    driver::SettingsScreen screen;
    screen.installDaemon();
    screen.open();
    screen.poll(nullptr);
    screen.type("Text", "new");
    [screen.window() makeFirstResponder:nil];
    screen.holdValidator();
    screen.press("Save");
    take(screen.window(), "settings-saving");
    screen.releaseValidator();
    (void)driver::pumpUntil([&] { return !driver::alertButtons(screen.window()).empty(); });
    take(screen.window(), "settings-alert");
    driver::clickAlertButton(screen.window(), 1);
}

TEST(DISABLED_Screens, SettingsRejected) {
    driver::SettingsScreen screen;
    screen.open();
    screen.type("Text", "new");
    screen.setVerdict(1,
                      R"({"ok":false,"errors":[{"options":["text"],"message":"not like this"},{"message":"nor so"}]})");
    screen.press("Save");
    (void)screen.waitToShow("The daemon rejected the file");
    take(screen.window(), "settings-rejected");
}

TEST(DISABLED_Screens, SettingsFailed) {
    driver::SettingsScreen screen;
    screen.setSchemaStatus(2);
    screen.open();
    take(screen.window(), "settings-failed");
}

TEST(DISABLED_Screens, StatusItemAndMenu) {
    AppKitStatusItem item;
    const auto events = std::make_shared<driver::RecordingEvents>();
    item.setEvents(events);
    using Tone = StatusItemPresentation::Tone;
    for (const auto& [symbol, tone, name] :
         {std::tuple("eye", Tone::ok, "ok"),
          std::tuple("eye.trianglebadge.exclamationmark", Tone::critical, "critical"),
          std::tuple("eye.slash", Tone::muted, "muted")}) {
        item.apply({.symbolName = symbol, .title = " 72%", .tone = tone, .tooltip = ""});
        take([[item.nativeItem() button] window], std::string("item-") + name);
    }
    MenuItem checked = driver::command("Icon only", MenuAction::toggleCompact);
    checked.checked = true;
    MenuItem note = driver::label("45,210 of 200,000 tokens");
    note.indentation = 1;
    MenuItem quit = driver::command("Quit", MenuAction::quit);
    quit.keyEquivalent = "q";
    item.setMenu({driver::label("Daemon running (last poll 2s ago)"), driver::separator(),
                  driver::command("acme · working · 72%", MenuAction::focusSession, 1), note,
                  driver::command(longText, MenuAction::focusSession, 2), driver::separator(), checked, quit});
    (void)driver::openMenu(item, {driver::wait(), driver::key(NSDownArrowFunctionKey), driver::wait(), driver::wait(),
                                  [] { takeMenu("menu"); }, driver::key(0x1B)});
}

} // namespace
} // namespace menubar
