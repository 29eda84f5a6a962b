#import "MenubarApp/AppKit/AppDelegate.h"
#import "MenubarApp/AppKit/StatusMenuTarget.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/AppKit/MenuRenderer.h"
#include "MenubarApp/AppKit/ObjCPointer.h"
#include "MenubarCore/Menu/MainMenu.h"

#include "tests/appkit/MenuDriver.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

class MenuRenderer : public ::testing::Test {
  protected:
    NSMenuItem* render(const MenuItem& value) {
        NSArray* items = makeMenuItems({value}, m_target.get());
        EXPECT_EQ([items count], 1U);
        return [items objectAtIndex:0];
    }

    ObjCPointer<NSObject> m_target = ObjCPointer<NSObject>::adopt([[NSObject alloc] init]);
};

TEST_F(MenuRenderer, rendersALabelDisabledAndWithoutAction) {
    NSMenuItem* item = render(driver::label("Recent events"));
    EXPECT_EQ(toString([item title]), "Recent events");
    EXPECT_FALSE([item isEnabled]);
    EXPECT_EQ([item action], static_cast<SEL>(nullptr));
    EXPECT_EQ([item target], nil);
    EXPECT_EQ(toString([item keyEquivalent]), "");
    EXPECT_EQ([item toolTip], nil);
    EXPECT_EQ([item representedObject], nil);
    EXPECT_EQ([item tag], 0);
    EXPECT_EQ([item indentationLevel], 0);
    EXPECT_EQ([item state], NSControlStateValueOff);
}

TEST_F(MenuRenderer, rendersEveryFieldOfACommand) {
    MenuItem value = driver::command("acme", MenuAction::openHandoff, 3);
    value.tooltip = "first\nsecond";
    value.checked = true;
    value.indentation = 2;
    value.keyEquivalent = "q";
    value.path = "/home/ann/a b#c.md";
    NSMenuItem* item = render(value);
    EXPECT_TRUE([item isEnabled]);
    EXPECT_TRUE(sel_isEqual([item action], @selector(openHandoff:)));
    EXPECT_EQ([item target], m_target.get());
    EXPECT_EQ([item tag], 3);
    EXPECT_EQ(toString([item toolTip]), "first\nsecond");
    EXPECT_EQ([item state], NSControlStateValueOn);
    EXPECT_EQ([item indentationLevel], 2);
    EXPECT_EQ(toString([item keyEquivalent]), "q");
    EXPECT_EQ([item keyEquivalentModifierMask], NSEventModifierFlagCommand);
    ASSERT_TRUE([[item representedObject] isKindOfClass:[NSURL class]]);
    EXPECT_EQ(toString([[item representedObject] path]), "/home/ann/a b#c.md");
}

TEST_F(MenuRenderer, rendersASeparator) {
    EXPECT_TRUE([render(driver::separator()) isSeparatorItem]);
}

TEST_F(MenuRenderer, addsShiftWhereTheKeyAsksForIt) {
    MenuItem value = driver::command("Redo", MenuAction::redo);
    value.keyEquivalent = "z";
    value.keyModifiers = KeyModifiers::shiftCommand;
    EXPECT_EQ([render(value) keyEquivalentModifierMask], NSEventModifierFlagCommand | NSEventModifierFlagShift);
}

TEST_F(MenuRenderer, sendsTheAppsActionsToTheTargetUnderTheirOwnNames) {
    const std::vector<std::pair<MenuAction, SEL>> cases = {
        {MenuAction::focusSession, @selector(focusSession:)},
        {MenuAction::openHandoff, @selector(openHandoff:)},
        {MenuAction::refreshClicked, @selector(refreshClicked:)},
        {MenuAction::openSettings, @selector(openSettings:)},
        {MenuAction::toggleCompact, @selector(toggleCompact:)},
        {MenuAction::startDaemon, @selector(startDaemon:)},
        {MenuAction::stopDaemon, @selector(stopDaemon:)},
        {MenuAction::openLogs, @selector(openLogs:)},
        {MenuAction::openStatusFile, @selector(openStatusFile:)},
        {MenuAction::quit, @selector(quit:)},
        {MenuAction::showSettings, @selector(show:)},
    };
    for (const auto& [action, selector] : cases) {
        NSMenuItem* item = render(driver::command("x", action));
        EXPECT_TRUE(sel_isEqual([item action], selector)) << rawText(action);
        EXPECT_EQ([item target], m_target.get()) << rawText(action);
    }
}

TEST_F(MenuRenderer, sendsTheEditingActionsAlongTheResponderChain) {
    for (const MenuAction action :
         {MenuAction::terminate, MenuAction::undo, MenuAction::redo, MenuAction::cut, MenuAction::copy,
          MenuAction::paste, MenuAction::selectAll, MenuAction::performClose, MenuAction::performMiniaturize}) {
        NSMenuItem* item = render(driver::command("x", action));
        EXPECT_EQ(toString(NSStringFromSelector([item action])), rawText(action));
        EXPECT_EQ([item target], nil) << rawText(action);
    }
}

TEST_F(MenuRenderer, drawsNothingRawThatCameFromOutside) {
    MenuItem value = driver::label("a\nb\u202Ec");
    value.tooltip = "a\nb\u202E\x07";
    NSMenuItem* item = render(value);
    EXPECT_EQ(toString([item title]), "a\uFFFDb\uFFFDc");
    EXPECT_EQ(toString([item toolTip]), "a\nb\uFFFD\uFFFD");
}

TEST_F(MenuRenderer, cutsATitleOfTenThousandCharacters) {
    NSMenuItem* item = render(driver::label(std::string(10'000, 'x')));
    EXPECT_EQ([[item title] length], 200U);
    EXPECT_TRUE([[item title] hasSuffix:@"…"]);
}

/// A line an item: title, action, key with modifiers.
void describe(NSMenu* menu, int depth, std::vector<std::string>& lines) {
    for (NSMenuItem* item in [menu itemArray]) {
        std::string line(static_cast<std::size_t>(depth) * 2, ' ');
        line += [item isSeparatorItem] ? "---" : toString([item title]);
        if ([item action] != nullptr && ![item hasSubmenu]) {
            line += " " + toString(NSStringFromSelector([item action]));
        }
        if ([[item keyEquivalent] length] > 0) {
            const bool shifted = ([item keyEquivalentModifierMask] & NSEventModifierFlagShift) != 0;
            line += (shifted ? " shift-cmd-" : " cmd-") + toString([item keyEquivalent]);
        }
        lines.push_back(line);
        if ([item hasSubmenu]) {
            EXPECT_TRUE([[[item submenu] title] isEqualToString:[item title]]);
            describe([item submenu], depth + 1, lines);
        }
    }
}

TEST_F(MenuRenderer, rendersTheWholeMainMenu) {
    const auto menu = ObjCPointer<NSMenu>::adopt([[NSMenu alloc] initWithTitle:@""]);
    for (NSMenuItem* item in makeMenuItems(MainMenu::make(), m_target.get())) {
        [menu.get() addItem:item];
    }
    std::vector<std::string> lines;
    describe(menu.get(), 0, lines);
    EXPECT_EQ(lines,
              (std::vector<std::string>{"ostrel-menubar", "  Settings... show: cmd-,", "  ---",
                                        "  Quit ostrel-menubar terminate: cmd-q", "Edit", "  Undo undo: cmd-z",
                                        "  Redo redo: shift-cmd-z", "  ---", "  Cut cut: cmd-x", "  Copy copy: cmd-c",
                                        "  Paste paste: cmd-v", "  Select All selectAll: cmd-a", "Window",
                                        "  Close performClose: cmd-w", "  Minimize performMiniaturize: cmd-m"}));
}

TEST_F(MenuRenderer, theTargetsAnswerEveryActionOfTheApp) {
    const auto target = ObjCPointer<StatusMenuTarget>::adopt([[StatusMenuTarget alloc] init]);
    for (const MenuAction action :
         {MenuAction::focusSession, MenuAction::openHandoff, MenuAction::refreshClicked, MenuAction::openSettings,
          MenuAction::toggleCompact, MenuAction::startDaemon, MenuAction::stopDaemon, MenuAction::openLogs,
          MenuAction::openStatusFile, MenuAction::quit}) {
        EXPECT_TRUE([target.get() respondsToSelector:[render(driver::command("x", action)) action]]) << rawText(action);
    }
    EXPECT_TRUE([AppDelegate instancesRespondToSelector:@selector(show:)]);
}

} // namespace
} // namespace menubar
