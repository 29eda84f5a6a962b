#import "MenubarApp/AppKit/AppDelegate.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/AppKit/MenuRenderer.h"
#include "MenubarApp/AppKit/ObjCPointer.h"
#include "MenubarCore/Menu/MainMenu.h"

#include "tests/appkit/MenuDriver.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

class MenuRenderer : public ::testing::Test {
protected:
    MenuRenderer() { [m_menu.get() setAutoenablesItems:NO]; }

    NSMenuItem* render(const MenuItem& value) {
        updateMenu(m_menu.get(), std::exchange(m_shown, {value}), {value}, m_target.get());
        EXPECT_EQ([m_menu.get() numberOfItems], 1);
        return static_cast<NSMenuItem*>([m_menu.get() itemAtIndex:0]);
    }

    ObjCPointer<NSMenu> m_menu = ObjCPointer<NSMenu>::adopt([[NSMenu alloc] initWithTitle:@""]);
    Menu m_shown;
    ObjCPointer<StatusMenuTarget> m_target = ObjCPointer<StatusMenuTarget>::adopt([[StatusMenuTarget alloc] init]);
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
    EXPECT_TRUE(sel_isEqual([item action], @selector(choose:)));
    EXPECT_EQ([static_cast<ActionItem*>(item) menuAction], MenuAction::openHandoff);
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

TEST_F(MenuRenderer, anItemThatGoesOnTakesNothingOverFromBefore) {
    MenuItem full = driver::command("acme", MenuAction::openHandoff, 3);
    full.tooltip = "tip";
    full.checked = true;
    full.indentation = 2;
    full.keyEquivalent = "q";
    full.path = "/home/ann/a.md";
    NSMenuItem* before = render(full);
    MenuItem bare;
    bare.title = "beta";
    bare.action = MenuAction::openHandoff;
    NSMenuItem* item = render(bare);
    EXPECT_EQ(item, before);
    EXPECT_EQ(toString([item title]), "beta");
    EXPECT_FALSE([item isEnabled]);
    EXPECT_EQ([item tag], 0);
    EXPECT_EQ([item toolTip], nil);
    EXPECT_EQ([item state], NSControlStateValueOff);
    EXPECT_EQ([item indentationLevel], 0);
    EXPECT_EQ(toString([item keyEquivalent]), "");
    EXPECT_EQ([item representedObject], nil);
}

TEST_F(MenuRenderer, rendersASeparator) {
    EXPECT_TRUE([render(driver::separator()) isSeparatorItem]);
}

TEST_F(MenuRenderer, addsShiftWhereTheKeyAsksForIt) {
    const MenuItem redo = {.title = "Redo", .keyEquivalent = "z", .keyModifiers = KeyModifiers::shiftCommand};
    EXPECT_EQ([render(redo) keyEquivalentModifierMask], NSEventModifierFlagCommand | NSEventModifierFlagShift);
}

TEST_F(MenuRenderer, aMessageThatTheTargetDoesNotAnswerTravelsAlongTheResponderChain) {
    NSMenuItem* undo = render({.title = "Undo", .selector = "undo:", .enabled = true});
    EXPECT_EQ(toString(NSStringFromSelector([undo action])), "undo:");
    EXPECT_EQ([undo target], nil);
    const auto delegate = ObjCPointer<AppDelegate>::adopt([[AppDelegate alloc] initWithTools:{} pollInterval:{}]);
    const auto menu = ObjCPointer<NSMenu>::adopt([[NSMenu alloc] initWithTitle:@""]);
    updateMenu(menu.get(), {}, {{.title = "Settings...", .selector = "show:", .enabled = true}}, delegate.get());
    EXPECT_EQ([[menu.get() itemAtIndex:0] target], delegate.get());
}

TEST_F(MenuRenderer, drawsNothingRawThatCameFromOutside) {
    MenuItem value = driver::label("a\nb\u202Ec");
    value.tooltip = "a\nb\u202E\x07";
    NSMenuItem* item = render(value);
    EXPECT_EQ(toString([item title]), "a\uFFFDb\uFFFDc");
    EXPECT_EQ(toString([item toolTip]), "a\nb\uFFFD\uFFFD");
}

TEST_F(MenuRenderer, rendersSubmenus) {
    NSMenuItem* window = render(MainMenu::make().back());
    EXPECT_EQ(toString([window title]), "Window");
    EXPECT_EQ(toString([[window submenu] title]), "Window");
    ASSERT_EQ([[window submenu] numberOfItems], 2);
    EXPECT_EQ(toString([[[window submenu] itemAtIndex:1] title]), "Minimize");
}

} // namespace
} // namespace menubar
