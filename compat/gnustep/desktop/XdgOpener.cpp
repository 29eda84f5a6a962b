#include "compat/gnustep/desktop/XdgOpener.h"

#include "MenubarApp/Commands/log.h"

#include "compat/gnustep/desktop/spawnDetached.h"

#include <cstring>
#include <utility>

namespace menubar {

XdgOpener::XdgOpener(std::string program) : m_program(std::move(program)) {}

void XdgOpener::open(const std::string& path) {
    collectFinished();
    // A name must be taken neither for an option nor for the address of a page.
    const pid_t child = spawnDetached(m_program, {path.starts_with('/') ? path : "./" + path});
    if (child < 0) {
        log("cannot open " + path + ": " + m_program + ": " + std::strerror(-child));
        return;
    }
    m_running.push_back(child);
}

void XdgOpener::reveal(const std::string& path) {
    const auto slash = path.rfind('/');
    open(slash == std::string::npos || slash == 0 ? "/" : path.substr(0, slash));
}

/// An opener that shows a file may run as long as the file is looked at: nobody waits for it, and those that are done
/// are collected when the next one starts.
void XdgOpener::collectFinished() {
    std::erase_if(m_running, hasEnded);
}

} // namespace menubar
