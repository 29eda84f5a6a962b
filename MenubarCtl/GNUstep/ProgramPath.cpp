#include "MenubarCtl/ProgramPath.h"

#include <filesystem>
#include <system_error>

namespace menubar::ctl {

std::string programPath() {
    std::error_code error;
    const auto path = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : path.string();
}

} // namespace menubar::ctl
