#import "MenubarApp/AppKit/AppKitStatusItem.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/AppKit/Desktop.h"
#include "MenubarApp/AppKit/MenuRenderer.h"
#include "MenubarCore/Text/DisplayText.h"

#include <utility>

namespace menubar {

namespace {

NSColor* tintOf(StatusItemPresentation::Tone tone) {
    switch (tone) {
    case StatusItemPresentation::Tone::ok: return [NSColor systemGreenColor];
    case StatusItemPresentation::Tone::warn: return [NSColor systemOrangeColor];
    case StatusItemPresentation::Tone::critical: return [NSColor systemRedColor];
    case StatusItemPresentation::Tone::muted: return [NSColor secondaryLabelColor];
    }
    return [NSColor secondaryLabelColor];
}

void setTitle(NSStatusBarButton* button, const std::string& title, NSColor* tint) {
    // Digits of one width, so that the item does not twitch when the percentage changes.
    NSFont* font = [NSFont monospacedDigitSystemFontOfSize:[NSFont systemFontSize] weight:NSFontWeightMedium];
    NSDictionary* attributes = @{NSForegroundColorAttributeName : tint, NSFontAttributeName : font};
    NSString* text = title.empty() ? @"" : toNSString(" " + displayTitle(title));
    [button setImagePosition:title.empty() ? NSImageOnly : NSImageLeading];
    [button setAttributedTitle:[[[NSAttributedString alloc] initWithString:text attributes:attributes] autorelease]];
}

} // namespace

AppKitStatusItem::AppKitStatusItem()
    : m_target(ObjCPointer<StatusMenuTarget>::adopt([[StatusMenuTarget alloc] init])),
      m_menu(ObjCPointer<NSMenu>::adopt([[NSMenu alloc] initWithTitle:@""])), m_item(Desktop::makeStatusItem()) {
    [m_menu.get() setAutoenablesItems:NO];
    [m_menu.get() setDelegate:m_target.get()];
    // A constant name keeps the place that the person gave the item. It is never hidden and shown again, which would
    // lose that place.
    [m_item.get() setAutosaveName:@"ostrel-menubar"];
    [m_item.get() setMenu:m_menu.get()];
    [[m_item.get() button] setImagePosition:NSImageLeading];
}

AppKitStatusItem::~AppKitStatusItem() {
    [m_menu.get() setDelegate:nil];
    [m_item.get() setMenu:nil];
    [[NSStatusBar systemStatusBar] removeStatusItem:m_item.get()];
}

void AppKitStatusItem::setEvents(std::weak_ptr<StatusMenuEvents> events) {
    [m_target.get() setEvents:std::move(events)];
}

void AppKitStatusItem::apply(const StatusItemPresentation& presentation) {
    NSStatusBarButton* button = [m_item.get() button];
    if (button == nil) {
        return;
    }
    const bool first = !m_shown.has_value();
    const bool newTone = first || m_shown->tone != presentation.tone;
    NSColor* tint = tintOf(presentation.tone);
    if (newTone || m_shown->symbolName != presentation.symbolName) {
        [button setImage:Desktop::statusSymbol(presentation.symbolName, tint)];
    }
    if (newTone) {
        [button setContentTintColor:tint];
    }
    if (newTone || m_shown->title != presentation.title) {
        setTitle(button, presentation.title, tint);
    }
    if (first || m_shown->tooltip != presentation.tooltip) {
        [button setToolTip:toNSString(displayText(presentation.tooltip, LineFeeds::keep))];
    }
    if (m_shown != presentation) {
        [button setAccessibilityLabel:toNSString(displayText(presentation.accessibilityLabel()))];
    }
    m_shown = presentation;
}

void AppKitStatusItem::setMenu(const Menu& menu) {
    if (menu == m_shownMenu) {
        return;
    }
    const Menu before = std::exchange(m_shownMenu, menu); // first, for GNUstep asks for an update at every change
    @autoreleasepool {
        updateMenu(m_menu.get(), before, menu, m_target.get());
    }
}

VisibilityProbe AppKitStatusItem::readVisibility() {
    return Desktop::readVisibility(m_item.get());
}

} // namespace menubar
