#include "MenubarApp/AppKit/GNUstep/XdgOpener.h"

#include "MenubarApp/Commands/log.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern "C" char** environ; // NOLINT(readability-redundant-declaration): not every system's headers declare it

namespace menubar {

namespace {

/// Starts the program with default signal handling and the null device as its input and output. The process id, or
/// minus the error number.
pid_t spawn(const std::string& program, const std::string& argument) {
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawnattr_init(&attributes);
    ::posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    sigset_t none;
    sigset_t all;
    ::sigemptyset(&none);
    ::sigfillset(&all);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setsigdefault(&attributes, &all);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    std::vector<char> name(program.c_str(), program.c_str() + program.size() + 1);
    std::vector<char> text(argument.c_str(), argument.c_str() + argument.size() + 1);
    char* const arguments[] = {name.data(), text.data(), nullptr};
    pid_t child = 0;
    const int error = ::posix_spawn(&child, program.c_str(), &files, &attributes, arguments, environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&files);
    return error == 0 ? child : -error;
}

} // namespace

XdgOpener::XdgOpener(std::string program) : m_program(std::move(program)) {}

void XdgOpener::open(const std::string& path) {
    collectFinished();
    const pid_t child = spawn(m_program, path);
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
    std::erase_if(m_running, [](pid_t child) {
        int status = 0;
        const pid_t answer = ::waitpid(child, &status, WNOHANG);
        return answer == child || (answer < 0 && errno == ECHILD);
    });
}

} // namespace menubar
