#pragma once

#include "MenubarApp/AppKit/ObjCPointer.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#import <AppKit/AppKit.h>

/// Turns the event loop for tests, and tells what each platform has its own way of telling: those functions are in
/// Cocoa/ and GNUstep/.
namespace menubar::driver {

using std::chrono::milliseconds;

/// Runs the main loop for that long, in the default mode, and for some turns however busy the machine is.
void pump(milliseconds duration);

/// Handles the events that are waiting, and those that they bring about, and returns.
void handleWaitingEvents();

/// Runs the main loop until `done` or the time is over. Whether it was done.
[[nodiscard]] bool pumpUntil(const std::function<bool()>& done, milliseconds limit = milliseconds(30000));

#if defined(__SANITIZE_ADDRESS__) || __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool isMemoryMeasurable = false; // freed memory is held back for a while
#else
inline constexpr bool isMemoryMeasurable = true;
#endif

/// Before the application object is made: buttons and pop-up buttons get the focus as fields do, also where the person
/// has not switched that on.
void giveFocusToEveryControl();

/// Brings a window of this program to the front and waits until it gets the keys.
void bringForward(NSWindow* window);

/// What the keyboard sends for the character, without modifiers; 0 where the platform does not look at it.
[[nodiscard]] unsigned short keyCode(unichar character);

/// How many objects of exactly that class there are, counted from the first call on. Always 0 where the platform does
/// not count: what is compared to it is then held by `residentBytes` alone.
[[nodiscard]] int liveObjects(Class type);

/// What this process holds of the machine's memory.
[[nodiscard]] std::size_t residentBytes();

/// GNUstep catches exceptions of timers and notifications and only logs them. From now on every line that it logs
/// fails the test that is running. macOS ends the program instead.
void failOnLoggedLines();

/// The lines logged since the last call; the test has looked at them.
std::vector<std::string> takeLoggedLines();

/// Replaces the app's defaults domain by this XML property list, as another process would.
void replaceDefaults(const std::string& propertyList);

/// The view's pixels, all drawn anew.
[[nodiscard]] ObjCPointer<NSBitmapImageRep> draw(NSView* view);
/// The view's pixels as a person sees them: what is said to be out of date has been drawn.
[[nodiscard]] ObjCPointer<NSBitmapImageRep> look(NSView* view);
/// Them as bytes, to compare.
[[nodiscard]] std::string bytesOf(NSBitmapImageRep* picture);

} // namespace menubar::driver
