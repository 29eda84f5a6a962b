#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/AlertSheet.h"
#include "MenubarApp/AppKit/ObjCPointer.h"
#include "MenubarApp/View/Window.h"

#include <memory>

@class OpenPanelRequest;
@class WindowDelegate;

namespace menubar {

/// A window on an NSWindow. Main thread.
class AppKitWindow final : public Window {
public:
    AppKitWindow(const WindowOptions& options, std::weak_ptr<WindowEvents> events);
    ~AppKitWindow() override;

    [[nodiscard]] ViewHost& content() override { return *m_content; }

    void bringForward() override;
    void performClose() override;
    void showAlert(const Alert& alert, std::function<void(std::size_t button)> answer) override;
    void chooseFile(const OpenPanel& panel, std::function<void(std::optional<std::string> path)> chosen) override;

    [[nodiscard]] NSWindow* window() const { return m_window.get(); }

private:
    /// What waits for a person's answer no longer does.
    void withdrawQuestions();

    ObjCPointer<NSWindow> m_window;
    ObjCPointer<WindowDelegate> m_delegate;
    std::unique_ptr<ViewHost> m_content;
    std::unique_ptr<AlertSheet> m_sheet;
    ObjCPointer<OpenPanelRequest> m_panel;
};

class AppKitWindowFactory final : public WindowFactory {
public:
    [[nodiscard]] std::unique_ptr<Window> makeWindow(const WindowOptions& options,
                                                     std::weak_ptr<WindowEvents> events) override;
};

} // namespace menubar
