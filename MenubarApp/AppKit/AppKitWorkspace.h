#pragma once

#include "MenubarApp/AppKit/Callback.h"
#include "MenubarApp/Platform/Workspace.h"

#include <memory>

namespace menubar {

/// The desktop's file opener, and the application object. Main thread.
class AppKitWorkspace final : public Workspace {
public:
    AppKitWorkspace();
    explicit AppKitWorkspace(std::unique_ptr<FileOpener> opener);

    void open(const std::string& path) override;
    void reveal(const std::string& path) override;
    [[nodiscard]] bool isOptionKeyDown() const override;
    Subscription onWake(std::function<void()> action) override;
    void terminate() override;

private:
    std::unique_ptr<FileOpener> m_opener;
    Observers m_wakeObservers;
    Observation m_waking;
};

} // namespace menubar
