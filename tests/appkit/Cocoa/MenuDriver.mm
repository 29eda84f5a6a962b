#import "tests/appkit/MenuDriver.h"

#include "MenubarApp/AppKit/Conversions.h"

#include <optional>

namespace menubar::driver {

namespace {

/// The menu that is played as open.
struct OpenMenu {
    NSMenu* menu = nil;
    bool isDone = false;
    std::optional<NSInteger> chosen;
};

OpenMenu* open = nullptr;

constexpr NSTimeInterval stepInterval = 0.012;

bool canBeChosen(NSInteger index) {
    NSMenuItem* item = [open->menu itemAtIndex:index];
    return [item isEnabled] && [item action] != nil;
}

} // namespace

/// In AppKit's order: the menu has closed when the action is sent.
bool openMenu(AppKitStatusItem& item, std::vector<Step> steps) {
    @autoreleasepool {
        NSMenu* menu = item.nativeMenu();
        OpenMenu played;
        played.menu = menu;
        open = &played;
        id<NSMenuDelegate> delegate = [menu delegate];
        if ([delegate respondsToSelector:@selector(menuNeedsUpdate:)]) {
            [delegate menuNeedsUpdate:menu];
        }
        if ([delegate respondsToSelector:@selector(menuWillOpen:)]) {
            [delegate menuWillOpen:menu];
        }
        for (const Step& step : steps) {
            if (!played.isDone) {
                step();
                [[NSRunLoop mainRunLoop] runMode:NSEventTrackingRunLoopMode
                                      beforeDate:[NSDate dateWithTimeIntervalSinceNow:stepInterval]];
            }
        }
        open = nullptr;
        if ([delegate respondsToSelector:@selector(menuDidClose:)]) {
            [delegate menuDidClose:menu];
        }
        if (played.chosen) {
            [menu performActionForItemAtIndex:*played.chosen];
        }
        return !played.isDone;
    }
}

Step click(const std::string& title) {
    return [title] {
        const NSInteger index = [open->menu indexOfItemWithTitle:toNSString(title)];
        if (index >= 0 && canBeChosen(index)) {
            open->chosen = index;
            open->isDone = true;
        }
    };
}

Step key(unichar character, NSUInteger modifiers) {
    return [character, modifiers] {
        constexpr unichar escape = 0x1B;
        if (character == escape) {
            open->isDone = true;
            return;
        }
        NSString* text = [NSString stringWithCharacters:&character length:1];
        for (NSInteger index = 0; index < [open->menu numberOfItems]; ++index) {
            NSMenuItem* item = [open->menu itemAtIndex:index];
            if ([[item keyEquivalent] isEqualToString:text] && [item keyEquivalentModifierMask] == modifiers &&
                canBeChosen(index)) {
                open->chosen = index;
                open->isDone = true;
                return;
            }
        }
    };
}

Step wait() {
    return [] {};
}

bool isMenuOpen() {
    return open != nullptr;
}

std::vector<std::string> openTitles() {
    std::vector<std::string> titles;
    for (NSMenuItem* item in open == nullptr ? @[] : [open->menu itemArray]) {
        titles.push_back([item isSeparatorItem] ? "-" : toString([item title]));
    }
    return titles;
}

} // namespace menubar::driver
