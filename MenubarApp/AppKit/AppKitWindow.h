#pragma once

#include "MenubarApp/AppKit/Callback.h"
#include "MenubarApp/View/Window.h"

#include <memory>
#include <optional>

#import <AppKit/AppKit.h>

namespace menubar {

class AlertSheet;

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
    struct PanelRequest;

    static void run(PanelRequest& request);
    void withdrawPanel();

    ObjCPointer<NSWindow> m_window;
    std::unique_ptr<ViewHost> m_content;
    std::unique_ptr<AlertSheet> m_sheet;
    std::shared_ptr<PanelRequest> m_panel;
    std::optional<Observation> m_closing;
};

class AppKitWindowFactory final : public WindowFactory {
public:
    [[nodiscard]] std::unique_ptr<Window> makeWindow(const WindowOptions& options,
                                                     std::weak_ptr<WindowEvents> events) override;
};

} // namespace menubar
