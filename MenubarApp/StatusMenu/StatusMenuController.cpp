#include "MenubarApp/StatusMenu/StatusMenuController.h"

#include "MenubarApp/Commands/DaemonCommands.h"
#include "MenubarApp/Platform/Clock.h"
#include "MenubarApp/Platform/StatusItem.h"
#include "MenubarApp/Platform/UserDefaults.h"
#include "MenubarApp/Platform/Workspace.h"
#include "MenubarApp/Settings/SettingsWindow.h"

#include <utility>

namespace menubar {

std::shared_ptr<StatusMenuController> StatusMenuController::create(std::string statusPath, Environment environment,
                                                                   const std::string& home, Ports ports) {
    // The constructor is private, which rules out make_shared.
    return std::shared_ptr<StatusMenuController>(
        new StatusMenuController(std::move(statusPath), std::move(environment), home, std::move(ports)));
}

StatusMenuController::StatusMenuController(std::string statusPath, Environment environment, const std::string& home,
                                           Ports ports)
    : m_paths(StatusPaths::under(home, std::move(statusPath))), m_environment(std::move(environment)),
      m_ports(std::move(ports)) {}

void StatusMenuController::start() {
    refresh();
    m_timer = m_ports.mainLoop.repeat(m_ports.interval, pollTolerance, refreshLater());
    m_wake = m_ports.workspace.onWake(refreshLater());
}

void StatusMenuController::menuNeedsUpdate() {
    if (!m_menuIsOutdated) {
        return;
    }
    m_menuIsOutdated = false; // first, for a desktop may ask again at every item that changes
    m_menu = m_poll.menu(m_paths, m_hiddenTracker, m_ports.fileManager, m_ports.clock.now(), m_ports.clock.timeZone());
    m_ports.statusItem.setMenu(m_menu.items);
}

void StatusMenuController::menuWillOpen() {
    m_menuIsOpen = true;
    refresh();
}

void StatusMenuController::menuDidClose() {
    m_menuIsOpen = false;
}

void StatusMenuController::applicationWillTerminate() {
    m_timer.reset();
    m_wake = {};
}

void StatusMenuController::perform(MenuAction action, int tag, const std::optional<std::string>& path) {
    switch (action) {
    case MenuAction::focusSession: focusSession(tag); return;
    case MenuAction::openHandoff: openHandoff(path); return;
    case MenuAction::refreshClicked: refresh(); return;
    case MenuAction::openSettings: m_ports.settings.show(); return;
    case MenuAction::toggleCompact: toggleCompact(); return;
    case MenuAction::startDaemon: m_ports.commands.startDaemon(refreshLater()); return;
    case MenuAction::stopDaemon: m_ports.commands.stopDaemon(refreshLater()); return;
    case MenuAction::openLogs: m_ports.workspace.open(m_paths.logsDirectory); return;
    case MenuAction::openStatusFile: m_ports.workspace.open(m_paths.statusFile); return;
    case MenuAction::quit: m_ports.workspace.terminate(); return;
    case MenuAction::none: return;
    }
}

void StatusMenuController::refresh() {
    const Date now = m_ports.clock.now();
    const TimeZone timeZone = m_ports.clock.timeZone();
    const auto storedCompact = m_ports.defaults.boolValue(CompactSetting::defaultsKey);
    m_poll = StatusPoll::read(m_paths.statusFile, m_environment, storedCompact, m_ports.fileManager, now, timeZone);
    if (m_shown != m_poll.presentation) {
        m_ports.statusItem.apply(m_poll.presentation);
        m_shown = m_poll.presentation;
    }
    m_ports.settings.update(m_poll.snapshot.file(), m_poll.state);
    if (!m_menuIsOpen) {
        // An open menu changes the state of the item's window.
        probeVisibility(now);
    }
    m_menuIsOutdated = true;
    if (m_menuIsOpen) {
        menuNeedsUpdate();
    }
}

void StatusMenuController::probeVisibility(Date now) {
    const VisibilityProbe probe = m_ports.statusItem.readVisibility();
    switch (m_hiddenTracker.observe(itemVisibility(probe.onscreen, probe.width), now)) {
    case HiddenItemTracker::Transition::becameVisible: m_ports.log("status item is visible again"); return;
    case HiddenItemTracker::Transition::becameHidden:
        m_ports.log(HiddenItemCopy::logLine(m_poll.compact.compact) + "; " + describe(probe));
        m_ports.commands.notify(std::string(HiddenItemCopy::notificationTitle),
                                std::string(HiddenItemCopy::notificationBody), [] {});
        return;
    case HiddenItemTracker::Transition::unchanged: return;
    }
}

void StatusMenuController::focusSession(int tag) {
    const SessionStatus* session = m_menu.sessionByTag(tag);
    if (session == nullptr || !session->workspaceId) {
        return;
    }
    m_ports.commands.focus(*session->workspaceId, session->surfaceId, refreshLater());
}

void StatusMenuController::openHandoff(const std::optional<std::string>& path) {
    if (!path) {
        return;
    }
    if (m_ports.workspace.isOptionKeyDown()) {
        m_ports.workspace.reveal(*path);
    } else {
        m_ports.workspace.open(*path);
    }
}

void StatusMenuController::toggleCompact() {
    m_ports.defaults.setBool(CompactSetting::defaultsKey, !m_poll.compact.compact);
    refresh();
}

std::function<void()> StatusMenuController::refreshLater() {
    return [weak = weak_from_this()] {
        if (const auto controller = weak.lock()) {
            controller->refresh();
        }
    };
}

} // namespace menubar
