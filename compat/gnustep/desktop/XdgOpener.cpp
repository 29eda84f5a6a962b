#include "compat/gnustep/desktop/XdgOpener.h"

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

pid_t spawnDetached(const std::string& program, const std::vector<std::string>& arguments) {
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawnattr_init(&attributes);
    ::posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1); // it may outlive this process
    sigset_t none;
    sigset_t all;
    ::sigemptyset(&none);
    ::sigfillset(&all);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setsigdefault(&attributes, &all);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    std::vector<std::string> texts{program};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> words;
    words.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        words.push_back(text.data());
    }
    words.push_back(nullptr);
    pid_t child = 0;
    const int error = ::posix_spawn(&child, program.c_str(), &files, &attributes, words.data(), environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&files);
    return error == 0 ? child : -error;
}

bool hasEnded(pid_t child) {
    int status = 0;
    const pid_t answer = ::waitpid(child, &status, WNOHANG);
    return answer == child || (answer < 0 && errno == ECHILD);
}

XdgOpener::XdgOpener(std::string program) : m_program(std::move(program)) {}

void XdgOpener::open(const std::string& path) {
    // An opener that shows a file may run as long as the file is looked at: nobody waits for it, and those that are
    // done are collected when the next one starts.
    std::erase_if(m_running, hasEnded);
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

} // namespace menubar
