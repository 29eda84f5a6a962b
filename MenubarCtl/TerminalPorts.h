#pragma once

#include "MenubarApp/Platform/StatusItem.h"
#include "MenubarApp/Platform/UserDefaults.h"
#include "MenubarApp/Platform/Workspace.h"
#include "MenubarApp/Settings/SettingsWindow.h"
#include "MenubarCtl/Context.h"

#include <functional>
#include <string>
#include <utility>

namespace menubar::ctl {

/// The desktop that a terminal is: the status menu's ports on it. Main thread.

/// The item and its menu are drawn by their owner, who is told that they have changed.
class TerminalStatusItem final : public StatusItem {
public:
    TerminalStatusItem(std::function<void(const StatusItemPresentation&)> applied,
                       std::function<void(const Menu&)> menuChanged)
        : m_applied(std::move(applied)), m_menuChanged(std::move(menuChanged)) {}

    void apply(const StatusItemPresentation& presentation) override { m_applied(presentation); }

    void setMenu(const Menu& menu) override { m_menuChanged(menu); }

    /// A terminal has no item that could be hidden.
    [[nodiscard]] VisibilityProbe readVisibility() override { return {}; }

private:
    std::function<void(const StatusItemPresentation&)> m_applied;
    std::function<void(const Menu&)> m_menuChanged;
};

/// The preferences that the app has, too.
class TerminalDefaults final : public UserDefaults {
public:
    TerminalDefaults(const Environment& environment, std::function<void(const std::string&)> failed)
        : m_environment(environment), m_failed(std::move(failed)) {}

    [[nodiscard]] std::optional<bool> boolValue(std::string_view key) const override;
    void setBool(std::string_view key, bool value) override;

private:
    const Environment& m_environment;
    std::function<void(const std::string&)> m_failed;
    PosixFileManager m_files;
};

/// There is no settings window here.
class NoSettingsWindow final : public SettingsWindow {
public:
    void show() override {}

    void update(const StatusFile*, const DaemonState&) override {}
};

/// Opens what the menu opens.
class TerminalWorkspace final : public Workspace {
public:
    explicit TerminalWorkspace(std::function<void(const std::string&)> open) : m_open(std::move(open)) {}

    void open(const std::string& path) override { m_open(path); }

    void reveal(const std::string& path) override { m_open(path); }

    [[nodiscard]] bool isOptionKeyDown() const override { return false; }

    /// Nobody tells a terminal's program; its timer runs on after a sleep.
    Subscription onWake(std::function<void()>) override { return {}; }

    void terminate() override {}

private:
    std::function<void(const std::string&)> m_open;
};

/// How a file is shown.
struct OpenPlan {
    std::vector<std::string> words; ///< the program and its arguments; empty when there is no way
    bool takesTerminal = false;     ///< whether it is read on this terminal
};

/// A file is read with $PAGER where that is set; else the system's opener takes it; else, and wherever an opener would
/// have no desktop to open it on, `less` reads it. A folder only the opener can show. No path is taken for an option or
/// for a pager's command. `isExecutable` is asked about paths.
[[nodiscard]] OpenPlan openPlan(const std::string& path, bool isFolder, const Environment& environment,
                                const std::function<bool(const std::string&)>& isExecutable);

} // namespace menubar::ctl
