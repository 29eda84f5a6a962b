#pragma once

#include "MenubarApp/AppKit/FileOpener.h"
#include "MenubarApp/Platform/Workspace.h"

#import "MenubarApp/AppKit/ObjCPointer.h"

#include <memory>

@class WakeListener;

namespace menubar {

/// The desktop's file opener, and the application object. Main thread.
class AppKitWorkspace final : public Workspace {
public:
    AppKitWorkspace();
    explicit AppKitWorkspace(std::unique_ptr<FileOpener> opener);
    ~AppKitWorkspace() override;

    void open(const std::string& path) override;
    void reveal(const std::string& path) override;
    [[nodiscard]] bool isOptionKeyDown() const override;
    Subscription onWake(std::function<void()> action) override;
    void terminate() override;

private:
    std::unique_ptr<FileOpener> m_opener;
    Observers m_wakeObservers;
    ObjCPointer<WakeListener> m_wakeListener;
};

} // namespace menubar
