#include "MenubarCtl/ThisSystem.h"

#include <cstdint>
#include <filesystem>
#include <system_error>

#include <mach-o/dyld.h>

namespace menubar::ctl {

std::string programPath() {
    std::uint32_t size = 0;
    _NSGetExecutablePath(nullptr, &size);
    std::string path(size, '\0');
    if (_NSGetExecutablePath(path.data(), &size) != 0) {
        return {};
    }
    path.resize(path.find('\0') == std::string::npos ? path.size() : path.find('\0'));
    std::error_code error;
    const auto absolute = std::filesystem::absolute(path, error);
    return error ? std::string() : absolute.string();
}

} // namespace menubar::ctl
