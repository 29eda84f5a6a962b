#include "demo/AtomicFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace menubar::demo {

namespace {

std::string failure(std::string_view what, const std::string& path, int error) {
    std::string text = "cannot ";
    text += what;
    text += " " + path + ": " + std::strerror(error);
    return text;
}

/// 0, or the error number.
int writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

} // namespace

std::expected<void, std::string> makeDirectories(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error) {
        return std::unexpected(failure("create the directory", path, error.value()));
    }
    return {};
}

std::expected<void, std::string> writeAtomically(const std::string& path, std::string_view bytes) {
    const std::string temporary = path + "." + std::to_string(::getpid()) + ".tmp";
    const int descriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (descriptor < 0) {
        return std::unexpected(failure("write", path, errno));
    }
    int error = writeAll(descriptor, bytes);
    if (::close(descriptor) != 0 && error == 0) {
        error = errno;
    }
    if (error == 0 && std::rename(temporary.c_str(), path.c_str()) != 0) {
        error = errno;
    }
    if (error != 0) {
        ::unlink(temporary.c_str());
        return std::unexpected(failure("write", path, error));
    }
    return {};
}

} // namespace menubar::demo
