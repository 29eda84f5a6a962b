#include "MenubarApp/AppKit/Controls/Look.h"

#import "MenubarApp/AppKit/GNUstep/SymbolImage.h"

#include "MenubarApp/AppKit/Conversions.h"

namespace menubar {

void NativeLook::dressLabel(NSTextField*) {}

void NativeLook::dressField(NSTextField*) {}

void NativeLook::dressButton(NSButton*, ButtonStyle) {}

void NativeLook::dressCheckbox(NSButton*) {}

void NativeLook::dressPicker(NSPopUpButton*) {}

void NativeLook::dressEditor(NSScrollView*, NSTextView*) {}

NSScrollView* NativeLook::newScrollView() {
    return [[NSScrollView alloc] initWithFrame:NSZeroRect];
}

NSImageView* NativeLook::newSymbolView() {
    return [[NSImageView alloc] initWithFrame:NSZeroRect];
}

NSImage* NativeLook::symbol(const std::string& name, const std::string& description, NSFont*) {
    return [SymbolImage symbolNamed:toNSString(name) accessibilityDescription:toNSString(description)];
}

/// GNUstep has no assistive technology to tell.
void NativeLook::describe(NSView*, const Accessibility&) {}

void NativeLook::keepTextPlain(NSTextView* text) {
    [text setContinuousSpellCheckingEnabled:NO];
    [text setSmartInsertDeleteEnabled:NO];
}

} // namespace menubar
