#include "MenubarApp/Settings/FileAttributes.h"

#include <algorithm>
#include <cerrno>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

#ifdef __APPLE__
#include <copyfile.h>
#else
#include <sys/xattr.h>
#endif
#include <fcntl.h>
#include <unistd.h>

namespace menubar {

#ifdef __APPLE__

int copyExtendedAttributes(int from, int to) {
    // Tried: the system marks files with attributes that nobody else may set (com.apple.provenance), and tells of one
    // that it could not set as if there were no others.
    ::fcopyfile(from, to, nullptr, COPYFILE_XATTR);
    return ::fcopyfile(from, to, nullptr, COPYFILE_ACL) == 0 || errno == ENOTSUP ? 0 : errno;
}

#else

namespace {

/// Calls `read(buffer, size)`, which returns the size it needs when given none, until the buffer is large enough.
template <typename Read>
std::expected<std::string, int> readAll(Read read) {
    for (;;) {
        const ssize_t needed = read(nullptr, 0);
        if (needed < 0) {
            return std::unexpected(errno);
        }
        std::string buffer(static_cast<std::size_t>(needed), '\0');
        const ssize_t count = needed == 0 ? 0 : read(buffer.data(), buffer.size());
        if (count >= 0) {
            buffer.resize(static_cast<std::size_t>(count));
            return buffer;
        }
        if (errno != ERANGE) { // it grew in between
            return std::unexpected(errno);
        }
    }
}

std::expected<std::vector<std::string>, int> attributeNames(int fd) {
    const auto list = readAll([fd](char* buffer, std::size_t size) { return ::flistxattr(fd, buffer, size); });
    std::vector<std::string> names;
    if (!list) {
        return list.error() == ENOTSUP ? std::expected<std::vector<std::string>, int>(names)
                                       : std::unexpected(list.error());
    }
    for (std::size_t start = 0; start < list->size();) {
        names.emplace_back(list->c_str() + start);
        start += names.back().size() + 1;
    }
    return names;
}

/// Access control lists live here beside what belongs to the system alone.
bool isOurs(std::string_view name) {
    return name.starts_with("user.") || name.starts_with("system.posix_acl_");
}

int copyAttribute(int from, int to, const std::string& name) {
    const auto value =
        readAll([&](char* buffer, std::size_t size) { return ::fgetxattr(from, name.c_str(), buffer, size); });
    if (!value) {
        return value.error();
    }
    return ::fsetxattr(to, name.c_str(), value->data(), value->size(), 0) == 0 ? 0 : errno;
}

} // namespace

int copyExtendedAttributes(int from, int to) {
    const auto wanted = attributeNames(from);
    const auto present = attributeNames(to);
    if (!wanted || !present) {
        return wanted ? present.error() : wanted.error();
    }
    for (const std::string& name : *present) {
        const bool isWanted = std::ranges::find(*wanted, name) != wanted->end();
        if (!isWanted && ::fremovexattr(to, name.c_str()) != 0 && isOurs(name)) {
            return errno;
        }
    }
    for (const std::string& name : *wanted) {
        if (const int error = copyAttribute(from, to, name); error != 0 && isOurs(name)) {
            return error;
        }
    }
    return 0;
}

#endif

int flushToDisk(int fd) {
#ifdef __APPLE__
    // fsync only reaches the drive, whose own cache a power failure empties.
    if (::fcntl(fd, F_FULLFSYNC) == 0) {
        return 0;
    }
#endif
    int result = 0;
    do {
        result = ::fsync(fd);
    } while (result != 0 && errno == EINTR);
    return result == 0 || errno == EINVAL || errno == ENOTSUP ? 0 : errno;
}

} // namespace menubar
