#import "tests/appkit/SettingsScreen.h"

#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/WindowDriver.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include <gtest/gtest.h>

namespace menubar::driver {

namespace {

constexpr const char* daemonPath = "/opt/ostrel";
constexpr const char* defaultSchema = R"({
    "properties": {"text": {"default": "d"}, "words": {"items": {"pattern": "^[a-z]+$"}}},
    "x-groups": [
        {"id": "one", "title": "First group", "settings": [
            {"name": "text", "control": "text", "help": "Some text."},
            {"name": "number", "control": "number", "min": 1, "max": 10},
            {"name": "wait", "control": "duration"},
            {"name": "switch", "control": "toggle"},
            {"name": "words", "control": "list"}]},
        {"id": "two", "title": "Second group", "settings": [
            {"name": "level", "control": "enum", "values": ["low", "middle", "high"]},
            {"name": "members", "control": "enum", "multiple": true, "values": ["red", "green"]},
            {"name": "file", "control": "path"},
            {"name": "story", "control": "text", "multiline": true},
            {"name": "odd", "control": "dial"},
            {"name": "last", "control": "text"}]}]})";

void collect(NSView* view, std::vector<NSView*>& into) {
    if ([view isHidden]) {
        return;
    }
    into.push_back(view);
    for (NSView* child in [view subviews]) {
        collect(child, into);
    }
}

std::vector<NSView*> viewsIn(NSWindow* window) {
    std::vector<NSView*> views;
    collect([window contentView], views);
    return views;
}

/// In the window, y upwards.
NSRect placeOf(NSView* view) {
    return [view convertRect:[view bounds] toView:nil];
}

NSTextField* asField(NSView* view, bool isEditable) {
    if (![view isKindOfClass:[NSTextField class]]) {
        return nil;
    }
    NSTextField* field = static_cast<NSTextField*>(view);
    return ([field isEditable] != NO) == isEditable ? field : nil;
}

bool isAbove(NSView* first, NSView* second) {
    const NSRect a = placeOf(first);
    const NSRect b = placeOf(second);
    return NSMaxY(a) != NSMaxY(b) ? NSMaxY(a) > NSMaxY(b) : NSMinX(a) < NSMinX(b);
}

} // namespace

SettingsScreen::SettingsScreen() {
    m_daemon.schema = {.status = 0, .stdout_ = defaultSchema, .stderr_ = ""};
    m_daemon.verdict = {.status = 0, .stdout_ = R"({"ok":true})", .stderr_ = ""};
    std::filesystem::create_directories(m_home / ".config/ostrel");
    const Environment environment{{"OSTREL_CLI", daemonPath}, {"PATH", ""}};
    const auto logLine = [this](std::string_view line) { log.emplace_back(line); };
    m_model = SettingsModel::create(
        environment, m_home.path(),
        {.mainLoop = m_mainLoop,
         .files = m_files,
         .clock = m_clock,
         .commands = commands,
         .run = [this](const std::string&, const std::vector<std::string>& arguments) { return run(arguments); },
         .isExecutable = [](const std::string& path) { return path == daemonPath; },
         .log = logLine});
    m_controller = SettingsWindowController::create(
        environment, m_model, {.mainLoop = m_mainLoop, .windows = m_windows, .clock = m_clock, .log = logLine});
}

SettingsScreen::~SettingsScreen() {
    releaseValidator();
}

// The daemon; its commands run in the background.

CommandResult SettingsScreen::run(const std::vector<std::string>& arguments) {
    std::unique_lock lock(m_daemon.mutex);
    if (arguments.size() < 3) {
        return m_daemon.schema;
    }
    m_daemon.isValidating = true;
    m_daemon.changed.wait(lock, [this] { return !m_daemon.isHeld; });
    m_daemon.isValidating = false;
    return m_daemon.verdict;
}

void SettingsScreen::setSchema(std::string schema) {
    const std::lock_guard lock(m_daemon.mutex);
    m_daemon.schema.stdout_ = std::move(schema);
}

void SettingsScreen::setSchemaStatus(int status) {
    const std::lock_guard lock(m_daemon.mutex);
    m_daemon.schema.status = status;
}

void SettingsScreen::setVerdict(int status, std::string json) {
    const std::lock_guard lock(m_daemon.mutex);
    m_daemon.verdict = {.status = status, .stdout_ = std::move(json), .stderr_ = ""};
}

void SettingsScreen::holdValidator() {
    const std::lock_guard lock(m_daemon.mutex);
    m_daemon.isHeld = true;
}

void SettingsScreen::releaseValidator() {
    const std::lock_guard lock(m_daemon.mutex);
    m_daemon.isHeld = false;
    m_daemon.changed.notify_all();
}

bool SettingsScreen::isValidating() const {
    const std::lock_guard lock(m_daemon.mutex);
    return m_daemon.isValidating;
}

// The window

void SettingsScreen::open() {
    m_controller->show();
    for (NSWindow* window in [NSApp windows]) {
        if (toString([window title]) == "ostrel Settings" && [window isVisible]) {
            m_window = ObjCPointer<NSWindow>::retain(window);
        }
    }
    ASSERT_NE(window(), nil);
    ASSERT_TRUE(pumpUntil([this] {
        return [window() isKeyWindow] && !std::holds_alternative<SettingsModel::Loading>(m_model->state().phase);
    }));
    settle();
}

void SettingsScreen::installDaemon() const {
    std::filesystem::create_directories(m_home / "Library/LaunchAgents");
    m_home.write("Library/LaunchAgents/dev.ostrel.daemon.plist", "");
}

void SettingsScreen::poll(const StatusFile* status) {
    m_controller->update(status,
                         status == nullptr ? DaemonState(DaemonState::Missing{}) : DaemonState(DaemonState::Running{}));
}

std::string SettingsScreen::config() const {
    return m_files.contents(m_home / ".config/ostrel/config.json").value_or("");
}

void SettingsScreen::writeConfig(std::string_view bytes) const {
    m_home.write(".config/ostrel/config.json", bytes);
}

void SettingsScreen::settle() const {
    pump(milliseconds(20));
}

// Eyes

NSTextField* SettingsScreen::label(const std::string& beginning) const {
    for (NSView* view : viewsIn(window())) {
        NSTextField* found = asField(view, false);
        if (found != nil && toString([found stringValue]).starts_with(beginning)) {
            return found;
        }
    }
    return nil;
}

bool SettingsScreen::shows(const std::string& beginning) const {
    return label(beginning) != nil;
}

bool SettingsScreen::waitToShow(const std::string& beginning) const {
    return pumpUntil([&] { return shows(beginning); });
}

bool SettingsScreen::isInSight(const std::string& beginning) const {
    NSTextField* found = label(beginning);
    return found != nil && NSContainsRect([found visibleRect], [found bounds]);
}

NSButton* SettingsScreen::button(const std::string& title) const {
    for (NSView* view : viewsIn(window())) {
        if ([view isKindOfClass:[NSButton class]] && toString([static_cast<NSButton*>(view) title]) == title) {
            return static_cast<NSButton*>(view);
        }
    }
    return nil;
}

/// A box holds its rows' controls side by side in no particular order; hairlines are between the rows.
std::vector<NSView*> SettingsScreen::rowViews(const std::string& setting) const {
    const auto all = viewsIn(window());
    const auto title = std::ranges::find_if(all, [&](NSView* view) {
        NSTextField* found = asField(view, false);
        return found != nil && toString([found stringValue]) == setting;
    });
    if (title == all.end()) {
        return {};
    }
    const CGFloat line = NSMidY(placeOf(*title));
    CGFloat upper = 1e9;
    CGFloat lower = -1e9;
    for (NSView* sibling in [[*title superview] subviews]) {
        if (const NSRect place = placeOf(sibling); NSHeight(place) <= 2.0) {
            const CGFloat y = NSMidY(place);
            (y > line ? upper : lower) = y > line ? std::min(upper, y) : std::max(lower, y);
        }
    }
    std::vector<NSView*> row;
    for (NSView* sibling in [[*title superview] subviews]) {
        if (const CGFloat y = NSMidY(placeOf(sibling)); y < upper && y > lower) {
            collect(sibling, row);
        }
    }
    std::ranges::sort(row, isAbove);
    return row;
}

NSView* SettingsScreen::control(const std::string& setting, Class type) const {
    for (NSView* view : rowViews(setting)) {
        if ([view isKindOfClass:type]) {
            return view;
        }
    }
    return nil;
}

std::vector<NSTextField*> SettingsScreen::fields(const std::string& setting) const {
    std::vector<NSTextField*> result;
    for (NSView* view : rowViews(setting)) {
        if (NSTextField* found = asField(view, true)) {
            result.push_back(found);
        }
    }
    return result;
}

NSTextField* SettingsScreen::field(const std::string& setting) const {
    const auto all = fields(setting);
    return all.empty() ? nil : all.front();
}

std::string SettingsScreen::text(const std::string& setting) const {
    NSTextField* found = field(setting);
    if (found == nil) {
        return "(no field)";
    }
    NSTextView* text = editor(); // holds what is being typed
    return toString(static_cast<id>([text delegate]) == found ? [text string] : [found stringValue]);
}

NSTextView* SettingsScreen::editor() const {
    NSResponder* responder = [window() firstResponder];
    return [responder isKindOfClass:[NSTextView class]] ? static_cast<NSTextView*>(responder) : nil;
}

// Hands

void SettingsScreen::focus(NSView* field) const {
    ASSERT_NE(field, nil);
    NSTextView* text = editor();
    if (text == nil || (text != field && static_cast<id>([text delegate]) != field)) {
        ASSERT_TRUE([window() makeFirstResponder:field]);
        text = editor();
    }
    [text setSelectedRange:NSMakeRange(0, [[text string] length])];
}

void SettingsScreen::type(const std::string& setting, const std::string& text) const {
    focus(field(setting));
    typeKeys(window(), text);
    settle();
}

void SettingsScreen::press(const std::string& title) const {
    NSButton* found = button(title);
    ASSERT_NE(found, nil) << title;
    [found performClick:nil];
    settle();
}

void SettingsScreen::pressNear(const std::string& setting, const std::string& title) const {
    for (NSView* view : rowViews(setting)) {
        if ([view isKindOfClass:[NSButton class]] && toString([static_cast<NSButton*>(view) title]) == title) {
            [static_cast<NSButton*>(view) performClick:nil];
            settle();
            return;
        }
    }
    ADD_FAILURE() << "no \"" << title << "\" in the row of " << setting;
}

} // namespace menubar::driver
