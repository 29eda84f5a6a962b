#include "MenubarApp/StatusMenu/StatusMenuController.h"

#include "MenubarApp/Commands/DaemonCommands.h"
#include "MenubarApp/Platform/Clock.h"
#include "MenubarApp/Platform/StatusItem.h"
#include "MenubarApp/Platform/UserDefaults.h"
#include "MenubarApp/Platform/Workspace.h"
#include "MenubarApp/Settings/SettingsWindow.h"
#include "MenubarCore/Daemon/LaunchAgentLabel.h"
#include "MenubarCore/Status/StatusFileLocator.h"

#include <span>
#include <utility>

namespace menubar {

std::shared_ptr<StatusMenuController> StatusMenuController::create(std::string statusPath, Environment environment,
                                                                   std::string home, Ports ports) {
    // The constructor is private, which rules out make_shared.
    return std::shared_ptr<StatusMenuController>(
        new StatusMenuController(std::move(statusPath), std::move(environment), std::move(home), std::move(ports)));
}

StatusMenuController::StatusMenuController(std::string statusPath, Environment environment, std::string home,
                                           Ports ports)
    : m_statusPath(std::move(statusPath)), m_environment(std::move(environment)),
      m_logsDirectory(home + "/Library/Logs/ostrel"), m_plistPath(launchAgentPlistPath(home)),
      m_ports(std::move(ports)) {}

void StatusMenuController::start() {
    refresh();
    m_timer = m_ports.mainLoop.repeat(pollInterval, pollTolerance, refreshLater());
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
    case MenuAction::openLogs: m_ports.workspace.open(m_logsDirectory); return;
    case MenuAction::openStatusFile: m_ports.workspace.open(m_statusPath); return;
    case MenuAction::quit: m_ports.workspace.terminate(); return;
    // The main menu's actions travel along the responder chain and never come here.
    case MenuAction::none:
    case MenuAction::showSettings:
    case MenuAction::terminate:
    case MenuAction::undo:
    case MenuAction::redo:
    case MenuAction::cut:
    case MenuAction::copy:
    case MenuAction::paste:
    case MenuAction::selectAll:
    case MenuAction::performClose:
    case MenuAction::performMiniaturize: return;
    }
}

void StatusMenuController::refresh() {
    const Date now = m_ports.clock.now();
    const TimeZone timeZone = m_ports.clock.timeZone();
    m_snapshot = StatusFileLocator::load(m_statusPath, m_ports.fileManager);
    m_state = DaemonState::from(m_snapshot, now);
    m_compact = CompactSetting::resolve(m_environment, m_ports.defaults.boolValue(CompactSetting::defaultsKey));

    const StatusFile* file = m_snapshot.file();
    const auto sessions = file == nullptr ? std::span<const SessionStatus>() : std::span(file->sessions);
    const auto failures = file == nullptr ? std::span<const ProviderFailure>() : std::span(file->providerFailures);
    auto presentation = StatusItemPresentation::make(m_state, sessions, failures, m_compact.compact, timeZone);
    if (m_shown != presentation) {
        m_ports.statusItem.apply(presentation);
        m_shown = std::move(presentation);
    }
    m_ports.settings.update(file, m_state);
    if (!m_menuIsOpen) {
        // An open menu changes the state of the item's window.
        probeVisibility(now);
    }
    rebuildMenu(now, timeZone);
}

void StatusMenuController::probeVisibility(Date now) {
    const VisibilityProbe probe = m_ports.statusItem.readVisibility();
    switch (m_hiddenTracker.observe(itemVisibility(probe.onscreen, probe.width), now)) {
    case HiddenItemTracker::Transition::becameVisible: m_ports.log("status item is visible again"); return;
    case HiddenItemTracker::Transition::becameHidden:
        m_ports.log(HiddenItemCopy::logLine(m_compact.compact) + "; " + describe(probe));
        m_ports.commands.notify(std::string(HiddenItemCopy::notificationTitle),
                                std::string(HiddenItemCopy::notificationBody), [] {});
        return;
    case HiddenItemTracker::Transition::unchanged: return;
    }
}

void StatusMenuController::rebuildMenu(Date now, const TimeZone& timeZone) {
    const FileManager& files = m_ports.fileManager;
    m_menu = StatusMenu::make({
        .snapshot = m_snapshot,
        .state = m_state,
        .compact = m_compact,
        .hiddenTracker = m_hiddenTracker,
        .handoffExists = [&files](const std::string& path) { return files.exists(path); },
        .isDaemonInstalled = files.exists(m_plistPath),
        .logsDirectoryExists = files.exists(m_logsDirectory),
        .statusFileExists = files.exists(m_statusPath),
        .now = now,
        .timeZone = timeZone,
    });
    m_ports.statusItem.setMenu(m_menu.items);
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
    m_ports.defaults.setBool(CompactSetting::defaultsKey, !m_compact.compact);
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
