#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/ObjCPointer.h"
#include "MenubarApp/Platform/LoginItem.h"
#include "MenubarApp/Platform/VisibilityProbe.h"
#include "MenubarApp/Platform/Workspace.h"
#include "MenubarApp/View/Window.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace menubar {

/// An alert that is up on a window. Destroying it takes it away without an answer; once it is answered that does
/// nothing. Main thread.
class AlertSheet : public Interface {};

/// Threads for work that blocks. Any thread. Destroying it waits for every action.
class BackgroundQueue : public Interface {
public:
    /// Runs `action` at user-initiated priority. Actions may run side by side and finish in any order.
    virtual void run(std::function<void()> action) = 0;
};

/// What the two desktops do differently. The build links the functions of Cocoa/ on macOS and those of
/// compat/ elsewhere; no source asks which it is. Main thread.
namespace Desktop {

/// Before anything else of Foundation or AppKit is touched.
void prepareProcess();

/// Once the application object and its delegate exist.
void prepareApplication();

/// A status item of variable length, with a button.
[[nodiscard]] ObjCPointer<NSStatusItem> makeStatusItem();

/// The system symbol of that name as a status item's image, described as "ostrel" and drawn in `color` whatever the
/// button's tint; nil when there is none.
[[nodiscard]] NSImage* statusSymbol(const std::string& name, NSColor* color);

/// What the window server tells of the window of the item's button.
[[nodiscard]] VisibilityProbe readVisibility(NSStatusItem* item);

/// A window that can be closed, minimised and resized, and that shows alerts as sheets.
[[nodiscard]] ObjCPointer<NSWindow> makeWindow(NSSize contentSize);

/// Called when a window has closed, or is about to: with the last one, the keys go back to the program that had them.
void giveBackKeys();

/// Puts an alert on such a window and returns at once. Return presses the first button, Escape the last. `answer` gets
/// the index of the pressed button, once, when the sheet has gone.
[[nodiscard]] std::unique_ptr<AlertSheet> showAlert(NSWindow* window, const Alert& alert,
                                                    std::function<void(std::size_t button)> answer);

/// The value stored in the app's defaults domain, as it is now, whoever wrote it; nil when there is none.
[[nodiscard]] id storedDefault(NSString* key);
void storeDefault(NSString* key, bool value);

/// The app among the things that are started at login; null where nothing is. Needs no application object.
[[nodiscard]] std::unique_ptr<LoginItem> makeLoginItem();

[[nodiscard]] std::unique_ptr<BackgroundQueue> makeBackgroundQueue();
[[nodiscard]] std::unique_ptr<FileOpener> makeFileOpener();

} // namespace Desktop

} // namespace menubar
