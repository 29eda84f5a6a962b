#pragma once

#include "MenubarApp/AppKit/FileOpener.h"
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
    void terminate() override;

private:
    std::unique_ptr<FileOpener> m_opener;
};

} // namespace menubar
