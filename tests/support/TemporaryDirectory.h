#pragma once

#include <cstdlib> // mkdtemp; in unistd.h on macOS
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include <unistd.h>

namespace menubar::testing_support {

/// All of the file's bytes; empty when there is none.
inline std::string bytesOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// A new empty directory that goes away with this object, with all that is in it.
class TemporaryDirectory {
public:
    TemporaryDirectory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "menubar-test-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary directory");
        }
        m_path = pattern;
    }

    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    [[nodiscard]] std::string path() const { return m_path.string(); }

    [[nodiscard]] std::string operator/(std::string_view name) const { return (m_path / name).string(); }

    /// Writes a file in it and returns its path.
    std::string write(std::string_view name, std::string_view bytes) const {
        const std::string file = *this / name;
        std::ofstream out(file, std::ios::binary);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return file;
    }

private:
    std::filesystem::path m_path;
};

} // namespace menubar::testing_support
