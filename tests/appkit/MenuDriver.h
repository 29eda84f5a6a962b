#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/AppKitStatusItem.h"
#include "MenubarApp/Platform/StatusItem.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Plays a person at the status item's menu.
namespace menubar::driver {

/// What happened to the menu, a line each: "willOpen", "didClose", "focusSession tag=1", "openHandoff path=/a".
class RecordingEvents final : public StatusMenuEvents {
public:
    void menuNeedsUpdate() override;
    void menuWillOpen() override;
    void menuDidClose() override;
    void perform(MenuAction action, int tag, const std::optional<std::string>& path) override;

    std::vector<std::string> log;
    std::function<void()> onNeedsUpdate; ///< GNUstep sends it at every change of an item too
    std::function<void()> onWillOpen;
};

using Step = std::function<void()>;

/// Opens the menu and takes one step every few milliseconds while it is tracked. A menu that is still open after the
/// last step is closed; whether that was needed is the answer.
[[nodiscard]] bool openMenu(AppKitStatusItem& item, std::vector<Step> steps);

/// The same for any menu that `open` opens and that is closed when it returns. Not on macOS.
[[nodiscard]] bool trackMenu(const std::function<void()>& open, std::vector<Step> steps);

// Steps. Each stands for an event that is handled before the next step. A menu of macOS takes no events from inside
// the program: there the driver does what the menu would do with them (opens, chooses, closes), and the steps from
// `hover` on are left out, with what only a menu of ours shows.

/// A click on the open menu's item of that title; nothing when there is none.
[[nodiscard]] Step click(const std::string& title);
[[nodiscard]] Step key(unichar character, NSUInteger modifiers = 0);
[[nodiscard]] Step wait();
[[nodiscard]] Step hover(const std::string& title);
[[nodiscard]] Step clickFarAway();
[[nodiscard]] Step wheel(double notches);

// What a person sees of the open menu.

[[nodiscard]] bool isMenuOpen();
/// The titles of the open menu's items, "-" for a separator.
[[nodiscard]] std::vector<std::string> openTitles();
/// The highlighted item's title; empty for none.
[[nodiscard]] std::string highlightedTitle();

/// The item of that title in any menu; nil when there is none.
[[nodiscard]] NSMenuItem* itemTitled(NSMenu* menu, const std::string& title);

// Values to show.

[[nodiscard]] MenuItem label(const std::string& title);
[[nodiscard]] MenuItem command(const std::string& title, MenuAction action, int tag = 0);
[[nodiscard]] MenuItem separator();

} // namespace menubar::driver
