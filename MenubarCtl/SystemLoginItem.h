#pragma once

#include "MenubarApp/Platform/LoginItem.h"

#include <chrono>
#include <expected>
#include <memory>
#include <optional>

namespace menubar::ctl {

/// The app that this program came with, as the system's login item. The error says why it cannot be one: the platform
/// has none, or the program does not run from the app's bundle. The build selects which implementation is linked.
/// Runs the app to ask it for its state; one that has not answered within the limit is killed, and does not count.
[[nodiscard]] std::expected<std::unique_ptr<LoginItem>, LoginItemError>
systemLoginItem(std::optional<std::chrono::milliseconds> limit = {});

} // namespace menubar::ctl
