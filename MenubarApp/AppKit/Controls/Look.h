#pragma once

#include "MenubarApp/View/Controls.h"
#include "MenubarApp/View/ViewHost.h"

#include <string>

#import <AppKit/AppKit.h>

namespace menubar {

/// Fonts, colours and sizes, from the roles that views name them by. Main thread.
namespace Look {

/// Made once each.
[[nodiscard]] NSFont* font(Font font);

/// Follows the system's appearance when it is drawn with.
[[nodiscard]] NSColor* color(TextColor color);

/// From the top of something that is `height` high and has a line of text in its middle.
[[nodiscard]] double centeredBaseline(double height, NSFont* font);

/// What a view says its natural size is.
[[nodiscard]] Measured naturalSize(NSView* view);

} // namespace Look

/// What the two desktops do differently about controls. The build links the functions of Cocoa/ on macOS and those of
/// compat/ elsewhere. Main thread.
namespace NativeLook {

// Each gives a fresh control the look that it does not have by itself.

/// Text without a border that wraps.
void dressLabel(NSTextField* label);
/// One line of text in a rounded border.
void dressField(NSTextField* field);
void dressButton(NSButton* button, ButtonStyle style);
void dressCheckbox(NSButton* checkbox);
void dressPicker(NSPopUpButton* picker);
/// A scroll view whose scroller lies over its content, which is as wide as the scroll view.
[[nodiscard]] NSScrollView* newScrollView() NS_RETURNS_RETAINED;

/// A bordered scroll view for `text`, which is not yet in it.
[[nodiscard]] NSScrollView* newEditorScrollView(NSTextView* text) NS_RETURNS_RETAINED;

/// A view that shows an image in its `contentTintColor`.
[[nodiscard]] NSImageView* newSymbolView() NS_RETURNS_RETAINED;

/// The system symbol of that name as large as a text of `font`; nil when there is none.
[[nodiscard]] NSImage* symbol(const std::string& name, const std::string& description, NSFont* font);

/// Tells assistive technology, where there is any. Empty texts are left to the control.
void describe(NSView* view, const Accessibility& accessibility);

/// The number that a control stands for, where it is not the one that the control counts with.
void describeValue(NSView* view, double value);

/// Leaves what a person types as it is: no quotes, dashes, spelling or replacements of the system's.
void keepTextPlain(NSTextView* text);

} // namespace NativeLook

} // namespace menubar
