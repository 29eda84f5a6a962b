#include "MenubarCore/Text/Tilde.h"

namespace menubar {

std::string expandTilde(std::string_view path, std::string_view home) {
    if (path != "~" && !path.starts_with("~/")) {
        return std::string(path);
    }
    std::string expanded(home);
    expanded += path.substr(1);
    return expanded;
}

} // namespace menubar
