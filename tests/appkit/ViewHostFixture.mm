#import "tests/appkit/ViewHostFixture.h"

#include "MenubarApp/AppKit/Conversions.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/WindowDriver.h"

namespace menubar::driver {

ControlsInAWindow::ControlsInAWindow() {
    constexpr NSUInteger style = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable | NSWindowStyleMaskResizable;
    NSWindow* window = [[NSWindow alloc] initWithContentRect:NSMakeRect(100, 100, 600, 400)
                                                   styleMask:style
                                                     backing:NSBackingStoreBuffered
                                                       defer:NO];
    [window setReleasedWhenClosed:NO];
    [window setContentView:m_content.get()];
    m_window = ObjCPointer<NSWindow>::adopt(window);
    m_host = std::make_unique<AppKitViewHost>(m_content.get());
    m_host->setEvents(m_events);
    bringForward(window);
}

ControlsInAWindow::~ControlsInAWindow() {
    m_host.reset();
    [m_window.get() close];
}

ControlId ControlsInAWindow::add(View::Content content, ControlId parent) {
    const ControlId made = ++m_lastId;
    host().create(made, parent, {.content = std::move(content)});
    host().place(made, {.x = 10.0, .y = 30.0 * static_cast<double>(made), .width = 200.0, .height = 24.0});
    return made;
}

void ControlsInAWindow::update(ControlId shown, const View::Content& now, const View::Content& before) {
    host().update(shown, {.content = now}, {.content = before});
}

ControlId ControlsInAWindow::focused() const {
    id responder = [m_window.get() firstResponder];
    if ([responder isKindOfClass:[NSTextView class]] && [responder isFieldEditor]) {
        responder = [responder delegate];
    }
    for (ControlId shown = 1; shown <= m_lastId; ++shown) {
        if (responder != nil && host().keyView(shown) == responder) {
            return shown;
        }
    }
    return windowContent;
}

void ControlsInAWindow::key(unichar character, NSUInteger modifiers) {
    NSString* characters = [NSString stringWithCharacters:&character length:1];
    for (const NSEventType type : {NSEventTypeKeyDown, NSEventTypeKeyUp}) {
        // currentEvent is what the loop dequeued last.
        [NSApp postEvent:keyEvent(m_window.get(), type, characters, modifiers) atStart:NO];
    }
    handleWaitingEvents();
}

void ControlsInAWindow::type(const std::string& text) {
    NSString* characters = toNSString(text);
    for (NSUInteger i = 0; i < [characters length]; ++i) {
        key([characters characterAtIndex:i]);
    }
}

void ControlsInAWindow::click(NSView* view, NSPoint offset) {
    const NSPoint middle = NSMakePoint(NSMidX([view bounds]) + offset.x, NSMidY([view bounds]) + offset.y);
    const NSPoint place = [view convertPoint:middle toView:nil];
    for (const NSEventType type : {NSEventTypeLeftMouseDown, NSEventTypeLeftMouseUp}) {
        [NSApp postEvent:[NSEvent
                             mouseEventWithType:type
                                       location:place
                                  modifierFlags:0
                                      timestamp:static_cast<NSTimeInterval>([[NSProcessInfo processInfo] systemUptime])
                                   windowNumber:[m_window.get() windowNumber]
                                        context:nil
                                    eventNumber:0
                                     clickCount:1
                                       pressure:1.0F]
                 atStart:NO];
    }
    handleWaitingEvents();
}

NSTextView* ControlsInAWindow::editor() const {
    id responder = [m_window.get() firstResponder];
    return [responder isKindOfClass:[NSTextView class]] ? responder : nil;
}

std::string ControlsInAWindow::shownText(ControlId shown) const {
    NSView* view = host().keyView(shown);
    return toString([view isKindOfClass:[NSTextView class]] ? [static_cast<NSTextView*>(view) string]
                                                            : [static_cast<NSControl*>(view) stringValue]);
}

} // namespace menubar::driver
