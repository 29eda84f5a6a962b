#pragma once

#include <utility>

#include <unistd.h>

namespace menubar {

/// An open descriptor, closed when this object goes; negative when there is none. Any thread, one at a time.
class FileDescriptor {
public:
    FileDescriptor() = default;

    explicit FileDescriptor(int fd) : m_fd(fd) {}

    FileDescriptor(FileDescriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}

    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            close();
            m_fd = std::exchange(other.m_fd, -1);
        }
        return *this;
    }

    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    ~FileDescriptor() { close(); }

    [[nodiscard]] int get() const { return m_fd; }

    [[nodiscard]] bool isOpen() const { return m_fd >= 0; }

    void close() {
        if (m_fd >= 0) {
            ::close(std::exchange(m_fd, -1));
        }
    }

private:
    int m_fd = -1;
};

} // namespace menubar
