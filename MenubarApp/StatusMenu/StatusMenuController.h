#pragma once

#include "MenubarApp/Platform/MainLoop.h"
#include "MenubarApp/Platform/Observers.h"
#include "MenubarApp/Platform/StatusItem.h"
#include "MenubarApp/StatusMenu/StatusPoll.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace menubar {

class Clock;
class DaemonCommands;
class SettingsWindow;
class StatusItem;
class UserDefaults;
class Workspace;

/// Keeps the status item and its menu true: every 3 seconds, after a sleep, and whenever the menu opens, it reads the
/// status file, restyles the item and checks that it is on screen. The menu is made anew each time it is open, and
/// otherwise when somebody looks at it: a closed menu costs nothing.
///
/// One lives for the whole process. Everything is on the main thread. What outlives a call (timer, completions) holds
/// the controller weakly and does nothing once it is gone.
class StatusMenuController final : public StatusMenuEvents, public std::enable_shared_from_this<StatusMenuController> {
public:
    static constexpr std::chrono::milliseconds pollInterval{3000};
    static constexpr std::chrono::milliseconds pollTolerance{300};

    /// What the controller reaches the world through. All of it outlives the controller.
    struct Ports {
        MainLoop& mainLoop;
        StatusItem& statusItem;
        Workspace& workspace;
        UserDefaults& defaults;
        const FileManager& fileManager;
        const Clock& clock;
        DaemonCommands& commands;
        SettingsWindow& settings;
        std::function<void(std::string_view)> log;
        std::chrono::milliseconds interval = pollInterval; ///< another one only where tests cannot wait
    };

    [[nodiscard]] static std::shared_ptr<StatusMenuController> create(std::string statusPath, Environment environment,
                                                                      const std::string& home, Ports ports);

    // Events from the shell

    /// Reads the file once and starts polling. Called once.
    void start();
    void menuNeedsUpdate() override;
    void menuWillOpen() override;
    void menuDidClose() override;
    void perform(MenuAction action, int tag, const std::optional<std::string>& path) override;
    /// Stops polling for good.
    void applicationWillTerminate();

    // State for the shell: what goes out through the ports, and

    /// the menu that the status item was last given, with what its items stand for.
    [[nodiscard]] const StatusMenu& menu() const { return m_menu; }

    // Calls to the shell: see Ports.

private:
    StatusMenuController(std::string statusPath, Environment environment, const std::string& home, Ports ports);

    void refresh();
    void probeVisibility(Date now);
    void focusSession(int tag);
    void openHandoff(const std::optional<std::string>& path);
    void toggleCompact();
    /// A completion that refreshes if the controller still exists.
    [[nodiscard]] std::function<void()> refreshLater();

    const StatusPaths m_paths;
    const Environment m_environment;
    const Ports m_ports;

    StatusPoll m_poll;
    HiddenItemTracker m_hiddenTracker;
    bool m_menuIsOpen = false;
    bool m_menuIsOutdated = true; // what it was made from has been read again since
    std::optional<StatusItemPresentation> m_shown;
    StatusMenu m_menu;
    // Last: they stop before anything that their actions use is gone.
    std::unique_ptr<RepeatingTimer> m_timer;
    Subscription m_wake;
};

} // namespace menubar
