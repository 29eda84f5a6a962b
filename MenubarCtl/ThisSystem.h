#pragma once

#include "MenubarApp/Platform/LoginItem.h"
#include "MenubarCore/System/Environment.h"
#include "MenubarCore/System/FileManager.h"

#include <chrono>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace menubar::ctl {

/// What each system does in its own way; the build selects whose way is linked.

/// An app of ours that runs now.
struct RunningApp {
    std::string path;    ///< of its executable
    std::string version; ///< of its bundle; empty when that does not tell

    bool operator==(const RunningApp&) const = default;
};

/// Whether this system has apps to look for.
[[nodiscard]] bool canFindApps();

/// The app's processes of this user.
[[nodiscard]] std::vector<RunningApp> runningApps();

/// The app that this program came with, as the system's login item. The error says why it cannot be one: the platform
/// has none, or the program does not run from the app's bundle.
/// Runs the app to ask it for its state; one that has not answered within the limit is killed, and does not count.
[[nodiscard]] std::expected<std::unique_ptr<LoginItem>, LoginItemError>
systemLoginItem(std::optional<std::chrono::milliseconds> limit = {});

/// Where this program was started from, an absolute path with no link followed where the system tells it so; empty when
/// it does not tell.
[[nodiscard]] std::string programPath();

/// A stored preference of the app (domain "ostrel-menubar") when there is one and it is a bool: from the system's
/// preferences on macOS, from the desktop app's own file on Debian.
[[nodiscard]] std::optional<bool> storedBool(std::string_view key, const Environment& environment,
                                             const FileManager& files);

/// Stores it where the app sees it at its next poll. The error is one line for people.
[[nodiscard]] std::expected<void, std::string> storeBool(std::string_view key, bool value,
                                                         const Environment& environment, const FileManager& files);

} // namespace menubar::ctl
