#include "tests/faults/SystemCalls.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace menubar::faults {

namespace {

Watch* current = nullptr;

void killSelf() {
    ::kill(::getpid(), SIGKILL);
    ::pause();
}

/// Makes the call, or not.
template <typename Result, typename Real>
Result meet(const char* name, Result failure, Real real) {
    const Fault fault = current == nullptr ? Fault::none : current->next(name);
    if (fault == Fault::kill) {
        killSelf();
    }
    if (fault == Fault::fail) {
        errno = current->error();
        return failure;
    }
    return real();
}

} // namespace

Watch::Watch(Plan plan) : m_plan(plan) {
    current = this;
}

Watch::~Watch() {
    current = nullptr;
}

Fault Watch::next(const char* name) {
    const bool isMet = m_calls.size() == m_plan.index;
    m_calls.emplace_back(name);
    return isMet ? m_plan.fault : Fault::none;
}

} // namespace menubar::faults

using menubar::faults::Fault;
using menubar::faults::meet;

// NOLINTBEGIN: the linker chooses these names
#define FAULTY(result, name, failure, parameters, arguments)                                                           \
    extern "C" result __real_##name parameters;                                                                        \
    extern "C" result __wrap_##name parameters {                                                                       \
        return meet<result>(#name, failure, [&] { return __real_##name arguments; });                                  \
    }

FAULTY(int, chmod, -1, (const char* path, mode_t mode), (path, mode))
FAULTY(int, fchmod, -1, (int fd, mode_t mode), (fd, mode))
FAULTY(int, fchown, -1, (int fd, uid_t owner, gid_t group), (fd, owner, group))
FAULTY(ssize_t, fgetxattr, -1, (int fd, const char* name, void* value, size_t size), (fd, name, value, size))
FAULTY(ssize_t, flistxattr, -1, (int fd, char* list, size_t size), (fd, list, size))
FAULTY(int, fremovexattr, -1, (int fd, const char* name), (fd, name))
FAULTY(int, fsetxattr, -1, (int fd, const char* name, const void* value, size_t size, int flags),
       (fd, name, value, size, flags))
FAULTY(int, fstat, -1, (int fd, struct stat* info), (fd, info))
FAULTY(int, fsync, -1, (int fd), (fd))
FAULTY(int, mkdir, -1, (const char* path, mode_t mode), (path, mode))
FAULTY(DIR*, opendir, nullptr, (const char* path), (path))
FAULTY(ssize_t, read, -1, (int fd, void* buffer, size_t size), (fd, buffer, size))
FAULTY(ssize_t, readlink, -1, (const char* path, char* buffer, size_t size), (path, buffer, size))
FAULTY(int, rename, -1, (const char* from, const char* to), (from, to))
FAULTY(int, stat, -1, (const char* path, struct stat* info), (path, info))
FAULTY(int, unlink, -1, (const char* path), (path))

extern "C" int __real_open(const char* path, int flags, mode_t mode);

extern "C" int __wrap_open(const char* path, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return meet<int>("open", -1, [&] { return __real_open(path, flags, mode); });
}

extern "C" ssize_t __real_write(int fd, const void* bytes, size_t size);

extern "C" ssize_t __wrap_write(int fd, const void* bytes, size_t size) {
    const Fault fault = menubar::faults::current == nullptr ? Fault::none : menubar::faults::current->next("write");
    if (fault == Fault::kill) {
        __real_write(fd, bytes, size / 2);
        menubar::faults::killSelf();
    }
    if (fault == Fault::fail) {
        errno = menubar::faults::current->error();
        return -1;
    }
    return __real_write(fd, bytes, size);
}

// NOLINTEND
