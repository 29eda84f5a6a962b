#pragma once

#include "MenubarCore/System/FileManager.h"

#include <cstddef>

namespace menubar {

/// The real file system. Any thread.
class PosixFileManager final : public FileManager {
public:
    /// A status file of 10,000 sessions takes about 8 MB; what is larger than this was not written by the daemon.
    static constexpr std::size_t maximumFileSize = std::size_t{64} << 20;

    [[nodiscard]] bool exists(const std::string& path) const override;
    [[nodiscard]] bool canLookAt(const std::string& path) const override;
    [[nodiscard]] std::expected<std::string, FileError> contents(const std::string& path) const override;

    /// Whether a regular file that this process may execute is at the path. A directory is none, whatever its mode.
    [[nodiscard]] static bool isExecutableFile(const std::string& path);
};

} // namespace menubar
