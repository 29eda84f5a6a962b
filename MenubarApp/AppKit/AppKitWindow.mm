#import "MenubarApp/AppKit/AppKitWindow.h"

#import "MenubarApp/AppKit/OpenPanelRequest.h"

#include "MenubarApp/AppKit/AppKitViewHost.h"
#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/AppKit/Desktop.h"
#include "MenubarCore/Text/DisplayText.h"

#include <functional>
#include <utility>

@interface WindowDelegate : NSObject <NSWindowDelegate> {
    std::function<void()> _willClose;
}
- (instancetype)initWithWillClose:(std::function<void()>)willClose;
@end

@implementation WindowDelegate

- (instancetype)initWithWillClose:(std::function<void()>)willClose {
    self = [super init];
    if (self != nil) {
        _willClose = std::move(willClose);
    }
    return self;
}

- (void)windowWillClose:(NSNotification*)notification {
    // Once: a window that is closed again has nothing new to tell.
    if (const auto willClose = std::exchange(_willClose, nullptr)) {
        willClose();
    }
}

@end

namespace menubar {

namespace {

NSSize toNSSize(const Size& size) {
    return NSMakeSize(size.width, size.height);
}

} // namespace

AppKitWindow::AppKitWindow(const WindowOptions& options, std::weak_ptr<WindowEvents> events)
    : m_window(Desktop::makeWindow(toNSSize(options.contentSize))) {
    auto willClose = [this, events = std::move(events)] {
        withdrawQuestions();
        if (const auto strong = events.lock()) {
            strong->windowWillClose();
        }
        Desktop::giveBackKeys();
    };
    m_delegate = ObjCPointer<WindowDelegate>::adopt([[WindowDelegate alloc] initWithWillClose:std::move(willClose)]);
    NSWindow* window = m_window.get();
    [window setTitle:toNSString(displayTitle(options.title))];
    [window setMinSize:toNSSize(options.minimumSize)];
    [window setReleasedWhenClosed:NO];
    [window setDelegate:m_delegate.get()];
    [window setContentView:makeFlippedContentView().get()];
    m_content = std::make_unique<AppKitViewHost>([window contentView]);
    [window center];
}

AppKitWindow::~AppKitWindow() {
    [m_window.get() setDelegate:nil];
    withdrawQuestions();
    m_content.reset();
    [m_window.get() close];
}

void AppKitWindow::withdrawQuestions() {
    m_sheet.reset();
    [m_panel.get() withdraw];
    m_panel = {};
}

void AppKitWindow::bringForward() {
    [NSApp unhideWithoutActivation];
    [NSApp activateIgnoringOtherApps:YES];
    const bool isNew = ![m_window.get() isVisible];
    if ([m_window.get() isMiniaturized]) {
        [m_window.get() deminiaturize:nil];
    }
    // The system may decline to activate an app that the person did not click on; its window is in front even then.
    [m_window.get() orderFrontRegardless];
    [m_window.get() makeKeyAndOrderFront:nil];
    if (isNew) {
        [m_window.get() makeFirstResponder:nil]; // a key that was meant for something else presses nothing here
    }
}

void AppKitWindow::performClose() {
    [m_window.get() performClose:nil];
}

void AppKitWindow::showAlert(const Alert& alert, std::function<void(std::size_t button)> answer) {
    m_sheet.reset();
    m_sheet = Desktop::showAlert(m_window.get(), alert, std::move(answer));
}

void AppKitWindow::chooseFile(const OpenPanel& panel, std::function<void(std::optional<std::string> path)> chosen) {
    [m_panel.get() withdraw];
    m_panel = ObjCPointer<OpenPanelRequest>::adopt([[OpenPanelRequest alloc] initWithOptions:panel
                                                                                      chosen:std::move(chosen)]);
    [m_panel.get() start];
}

std::unique_ptr<Window> AppKitWindowFactory::makeWindow(const WindowOptions& options,
                                                        std::weak_ptr<WindowEvents> events) {
    return std::make_unique<AppKitWindow>(options, std::move(events));
}

} // namespace menubar
