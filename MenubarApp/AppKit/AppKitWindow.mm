#import "MenubarApp/AppKit/AppKitWindow.h"

#include "MenubarApp/AppKit/AppKitViewHost.h"
#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/AppKit/Desktop.h"
#include "MenubarCore/Text/DisplayText.h"

#include <functional>
#include <utility>

namespace menubar {

namespace {

NSSize toNSSize(const Size& size) {
    return NSMakeSize(size.width, size.height);
}

/// The path if it is a directory, else the one around it; nil for a path that is not absolute.
NSURL* directoryOf(const std::string& path) {
    if (!path.starts_with('/')) {
        return nil;
    }
    NSString* text = toNSString(path);
    BOOL isDirectory = NO;
    const bool exists = [[NSFileManager defaultManager] fileExistsAtPath:text isDirectory:&isDirectory];
    NSString* directory = exists && isDirectory ? text : [text stringByDeletingLastPathComponent];
    return [NSURL fileURLWithPath:directory isDirectory:YES];
}

} // namespace

struct AppKitWindow::PanelRequest {
    OpenPanel options;
    std::function<void(std::optional<std::string>)> chosen; ///< empty once nobody waits for it any more
    ObjCPointer<NSOpenPanel> running{};
};

AppKitWindow::AppKitWindow(const WindowOptions& options, std::weak_ptr<WindowEvents> events)
    : m_window(Desktop::makeWindow(toNSSize(options.contentSize))) {
    m_closing.emplace([NSNotificationCenter defaultCenter], NSWindowWillCloseNotification, m_window.get(),
                      [this, events = std::move(events)] {
                          m_closing.reset(); // a window that is closed again has nothing new to tell
                          m_sheet.reset();
                          withdrawPanel();
                          if (const auto strong = events.lock()) {
                              strong->windowWillClose();
                          }
                          Desktop::giveBackKeys();
                      });
    NSWindow* window = m_window.get();
    [window setTitle:toNSString(displayTitle(options.title))];
    [window setMinSize:toNSSize(options.minimumSize)];
    [window setReleasedWhenClosed:NO];
    [window setContentView:makeFlippedContentView().get()];
    m_content = std::make_unique<AppKitViewHost>([window contentView]);
    [window center];
}

AppKitWindow::~AppKitWindow() {
    m_closing.reset();
    withdrawPanel();
    m_sheet.reset();
    m_content.reset();
    [m_window.get() close];
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
    withdrawPanel();
    m_panel = std::make_shared<PanelRequest>(panel, std::move(chosen));
    // In a turn of the main loop of its own: what asked for it has returned by then, and its half-done work does not
    // wait for a person.
    const auto callback = makeCallback([request = m_panel] { run(*request); });
    [callback.get() performSelector:@selector(call:) withObject:nil afterDelay:0.0];
}

void AppKitWindow::run(PanelRequest& request) {
    if (!request.chosen) {
        return;
    }
    NSOpenPanel* panel = [NSOpenPanel openPanel];
    NSString* purpose = toNSString(displayTitle(request.options.title));
    [panel setTitle:purpose];
    [panel setMessage:purpose]; // macOS draws no title
    if (NSURL* directory = directoryOf(request.options.startPath)) {
        [panel setDirectoryURL:directory];
    }
    [panel setCanChooseFiles:YES];
    [panel setCanChooseDirectories:YES];
    [panel setAllowsMultipleSelection:NO];
    [panel setShowsHiddenFiles:YES];
    request.running = ObjCPointer<NSOpenPanel>::retain(panel);
    const bool isConfirmed = [panel runModal] == NSModalResponseOK;
    request.running = {};
    if (const auto chosen = std::exchange(request.chosen, nullptr)) {
        NSURL* url = isConfirmed ? [[panel URLs] firstObject] : nil; // a cancelled panel may still have some
        chosen(url == nil ? std::nullopt : std::optional(toString([url path])));
    }
}

/// Takes it away; nobody is told.
void AppKitWindow::withdrawPanel() {
    if (m_panel) {
        m_panel->chosen = nullptr;
        [m_panel->running.get() cancel:nil];
        m_panel.reset();
    }
}

std::unique_ptr<Window> AppKitWindowFactory::makeWindow(const WindowOptions& options,
                                                        std::weak_ptr<WindowEvents> events) {
    return std::make_unique<AppKitWindow>(options, std::move(events));
}

} // namespace menubar
