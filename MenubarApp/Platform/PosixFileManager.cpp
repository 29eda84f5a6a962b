#include "MenubarApp/Platform/PosixFileManager.h"

#include "MenubarApp/Platform/FileDescriptor.h"

#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace menubar {

namespace {

std::unexpected<FileError> unreadable(const std::string& path, const std::string& reason) {
    return std::unexpected(FileError{"The file \"" + path + "\" could not be read: " + reason + "."});
}

std::unexpected<FileError> unreadable(const std::string& path, int error) {
    return unreadable(path, std::generic_category().message(error));
}

/// No file has such a name, and a system call would see only the part before it.
bool hasNul(const std::string& path) {
    return path.find('\0') != std::string::npos;
}

const char* kindOf(mode_t mode) {
    return S_ISDIR(mode)    ? "it is a directory"
           : S_ISFIFO(mode) ? "it is a pipe, not a regular file"
           : S_ISSOCK(mode) ? "it is a socket, not a regular file"
                            : "it is a device, not a regular file";
}

std::string tooLarge() {
    return "it is larger than " + std::to_string(PosixFileManager::maximumFileSize >> 20) + " MB";
}

/// Opens without waiting: a FIFO that nobody writes would block a plain open for ever. Devices are not opened at all,
/// for with some of them opening has an effect.
std::expected<int, FileError> openRegular(const std::string& path, struct stat& info) {
    if (::stat(path.c_str(), &info) != 0) {
        return unreadable(path, errno);
    }
    if (!S_ISREG(info.st_mode)) {
        return unreadable(path, kindOf(info.st_mode));
    }
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0) {
        return unreadable(path, errno);
    }
    return fd;
}

/// Reads to the end, at most one byte beyond the limit; 0 or the system's error number.
int readAll(int fd, std::string& bytes) {
    constexpr std::size_t chunk = std::size_t{64} << 10;
    std::size_t length = 0;
    while (length <= PosixFileManager::maximumFileSize) {
        if (bytes.size() - length < 1) {
            bytes.resize(bytes.size() + chunk);
        }
        const ssize_t count = ::read(fd, bytes.data() + length, bytes.size() - length);
        if (count == 0) {
            break;
        }
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            return errno;
        }
        length += static_cast<std::size_t>(count);
    }
    bytes.resize(length);
    return 0;
}

} // namespace

bool PosixFileManager::canLookAt(const std::string& path) const {
    struct stat info{};
    return !hasNul(path) && ::stat(path.c_str(), &info) == 0;
}

bool PosixFileManager::exists(const std::string& path) const {
    if (hasNul(path)) {
        return false;
    }
    if (canLookAt(path)) {
        return true;
    }
    // What may not be looked at counts as there, so that the reader gets to say why. EILSEQ: a name that this file
    // system gives to nothing.
    return errno != ENOENT && errno != ENOTDIR && errno != ENAMETOOLONG && errno != EILSEQ;
}

std::expected<std::string, FileError> PosixFileManager::contents(const std::string& path) const {
    if (hasNul(path)) {
        return unreadable(path, ENOENT);
    }
    struct stat info{};
    const auto opened = openRegular(path, info);
    if (!opened) {
        return std::unexpected(opened.error());
    }
    const FileDescriptor file(*opened);
    // What was opened may have replaced what was looked at.
    if (::fstat(file.get(), &info) != 0) {
        return unreadable(path, errno);
    }
    if (!S_ISREG(info.st_mode)) {
        return unreadable(path, kindOf(info.st_mode));
    }
    if (std::cmp_greater(info.st_size, maximumFileSize)) {
        return unreadable(path, tooLarge());
    }
    // One byte of room beyond the expected end, so that the end is seen without another allocation.
    std::string bytes(static_cast<std::size_t>(info.st_size) + 1, '\0');
    if (const int error = readAll(file.get(), bytes); error != 0) {
        return unreadable(path, error);
    }
    if (bytes.size() > maximumFileSize) {
        return unreadable(path, tooLarge());
    }
    return bytes;
}

bool PosixFileManager::isExecutableFile(const std::string& path) {
    struct stat info{};
    return !hasNul(path) && ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
           ::access(path.c_str(), X_OK) == 0;
}

} // namespace menubar
