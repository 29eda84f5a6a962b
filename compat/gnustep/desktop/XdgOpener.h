#pragma once

#include "MenubarApp/Platform/Workspace.h"

#include <string>
#include <vector>

#include <sys/types.h>

namespace menubar {

/// Starts a program with default signal handling and the null device as its input and output, with this process's
/// standard error and none of its other descriptors, and does not wait for it. The process id, or minus the error
/// number. Any thread.
[[nodiscard]] pid_t spawnDetached(const std::string& program, const std::vector<std::string>& arguments);

/// Whether the child has ended, and is no more; asked again after that, it says so too.
[[nodiscard]] bool hasEnded(pid_t child);

/// Hands files to `xdg-open`, which knows the desktop's default applications. GNUstep's own workspace is no
/// alternative: it waits for an answer that may never come. Main thread.
class XdgOpener final : public FileOpener {
public:
    explicit XdgOpener(std::string program = "/usr/bin/xdg-open");

    void open(const std::string& path) override;

    /// There is no common way to select a file: opens the directory that holds it.
    void reveal(const std::string& path) override;

    /// The openers that were started and not yet collected.
    [[nodiscard]] const std::vector<pid_t>& running() const { return m_running; }

private:
    std::string m_program;
    std::vector<pid_t> m_running;
};

} // namespace menubar
