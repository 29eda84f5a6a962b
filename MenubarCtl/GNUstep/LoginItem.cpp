#include "MenubarCtl/SystemLoginItem.h"

namespace menubar::ctl {

std::expected<std::unique_ptr<LoginItem>, LoginItemError> systemLoginItem(std::optional<std::chrono::milliseconds>) {
    return std::unexpected(LoginItemError{"only macOS can start the app at login"});
}

} // namespace menubar::ctl
