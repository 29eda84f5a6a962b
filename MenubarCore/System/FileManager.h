#pragma once

#include "MenubarCore/System/Interface.h"

#include <expected>
#include <string>

namespace menubar {

/// Why a file could not be read: one sentence for people, with the file's name and the system's reason.
struct FileError {
    std::string message;

    bool operator==(const FileError&) const = default;
};

/// What the core asks of the file system. Implementations never throw.
class FileManager : public Interface {
public:
    /// Whether anything is at the path; a symbolic link counts as what it leads to, so a dangling one is nothing. What
    /// cannot be looked at (behind a closed folder, or a loop of links) may be there and counts as something.
    [[nodiscard]] virtual bool exists(const std::string& path) const = 0;

    /// Whether what is at the path exists and can be looked at.
    [[nodiscard]] virtual bool canLookAt(const std::string& path) const { return exists(path); }

    /// The bytes of a regular file. Anything else (a directory, a FIFO, a device) is refused without waiting for it.
    [[nodiscard]] virtual std::expected<std::string, FileError> contents(const std::string& path) const = 0;
};

} // namespace menubar
