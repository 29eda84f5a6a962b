#include "MenubarCore/Menu/StatusMenu.h"

#include "MenubarCore/Menu/ConfigNotices.h"
#include "MenubarCore/Menu/Formatting.h"
#include "MenubarCore/Menu/Selection.h"

#include <span>

namespace menubar {

namespace {

constexpr std::size_t recentEventLimit = 5;

std::optional<std::string> unlessEmpty(std::string text) {
    return text.empty() ? std::nullopt : std::optional(std::move(text));
}

MenuItem information(std::string title, std::string tooltip = {}) {
    return {.title = std::move(title), .tooltip = unlessEmpty(std::move(tooltip))};
}

MenuItem command(std::string title, MenuAction action) {
    return {.title = std::move(title), .action = action, .enabled = true};
}

MenuItem separator() {
    return {.kind = MenuItem::Kind::separator};
}

std::string tooltipOf(const ConfigNotice& notice) {
    const auto& error = notice.configError;
    return !error ? "" : error->path ? error->message + "\n" + *error->path : error->message;
}

/// Adds section after section to one menu.
class Builder {
public:
    explicit Builder(const StatusMenu::Inputs& inputs) : m_in(inputs), m_file(inputs.snapshot.file()) {
        if (m_file != nullptr) {
            m_sessions = m_file->sessions;
        }
        constexpr std::size_t roomForTheRest = 32;
        m_menu.items.reserve(m_sessions.size() + roomForTheRest);
    }

    StatusMenu build() && {
        addHeader();
        m_menu.items.push_back(separator());
        addSessions();
        m_menu.items.push_back(separator());
        addHandoffs();
        m_menu.items.push_back(separator());
        addEvents();
        m_menu.items.push_back(separator());
        addActions();
        return std::move(m_menu);
    }

private:
    void add(MenuItem item) { m_menu.items.push_back(std::move(item)); }

    void addHeader() {
        for (const ConfigNotice& notice : ConfigNotices::notices(m_file, m_in.state)) {
            add(information(notice.menuLine(), tooltipOf(notice)));
        }
        if (m_in.hiddenTracker.hiddenSince) {
            add(information(HiddenItemCopy::menuLine(*m_in.hiddenTracker.hiddenSince, m_in.timeZone)));
        }
        add(information(m_in.state.title(m_in.timeZone)));
        add(information(m_in.state.detail(m_file != nullptr && m_file->config ? &*m_file->config : nullptr)));
        if (m_file != nullptr) {
            for (const ProviderFailure& failure : m_file->providerFailures) {
                add(information(failure.provider + " discovery unavailable", failure.reason));
            }
        }
    }

    void addSessions() {
        m_menu.sessions = Selection::sorted(m_sessions);
        if (m_menu.sessions.empty()) {
            add(information(m_in.state.isRunning() ? "No sessions" : "No session data"));
            return;
        }
        if (!m_in.state.isRunning()) {
            add(information("Sessions from the last poll"));
        }
        int tag = 0;
        for (const SessionStatus& session : m_menu.sessions) {
            MenuItem item =
                information(Formatting::sessionLine(session, m_in.now), Formatting::sessionDetail(session, m_in.now));
            item.enabled = session.workspaceId && !session.workspaceId->empty();
            item.action = item.enabled ? MenuAction::focusSession : MenuAction::none;
            item.tag = ++tag;
            add(std::move(item));
        }
    }

    void addHandoffs() {
        add(information("Handoffs"));
        std::vector<HandoffItem> handoffs = Selection::handoffItems(m_sessions, m_in.now, m_in.handoffExists);
        if (handoffs.empty()) {
            add(information("No handoffs"));
        }
        for (HandoffItem& handoff : handoffs) {
            MenuItem item = information(std::move(handoff.title), handoff.path);
            item.enabled = handoff.isEnabled;
            item.action = item.enabled ? MenuAction::openHandoff : MenuAction::none;
            item.path = std::move(handoff.path);
            add(std::move(item));
        }
    }

    void addEvents() {
        add(information("Recent events"));
        const std::span<const OstrelEvent> all =
            m_file == nullptr ? std::span<const OstrelEvent>() : std::span(m_file->events);
        const std::vector<OstrelEvent> events = Selection::recentEvents(all, recentEventLimit);
        if (events.empty()) {
            add(information("No events yet"));
        }
        for (const OstrelEvent& event : events) {
            MenuItem item = information(Formatting::eventLine(event, m_in.timeZone), event.text.value_or(""));
            item.indentation = 1;
            add(std::move(item));
        }
    }

    void addActions() {
        add(command("Refresh", MenuAction::refreshClicked));
        add(command("Settings...", MenuAction::openSettings));
        add(compactToggle());
        addDaemonControl();
        MenuItem logs = command("Open logs", MenuAction::openLogs);
        logs.enabled = m_in.logsDirectoryExists;
        add(std::move(logs));
        MenuItem statusFile = command("Open status file", MenuAction::openStatusFile);
        statusFile.enabled = m_in.statusFileExists;
        add(std::move(statusFile));
        add(separator());
        MenuItem quit = command("Quit", MenuAction::quit);
        quit.keyEquivalent = "q";
        add(std::move(quit));
    }

    [[nodiscard]] MenuItem compactToggle() const {
        const bool isLocked = m_in.compact.isLockedByEnvironment();
        MenuItem toggle = command("Icon only", MenuAction::toggleCompact);
        if (isLocked) {
            toggle.title += " (set by " + std::string(CompactSetting::environmentKey) + ")";
        }
        toggle.checked = m_in.compact.compact;
        toggle.enabled = !isLocked;
        return toggle;
    }

    void addDaemonControl() {
        if (!m_in.isDaemonInstalled) {
            add(information("Daemon not installed (run: ostrel install)"));
            return;
        }
        switch (m_in.state.kind()) {
        case DaemonState::Case::running:
            if (ConfigNotices::restartNeeded(m_file, m_in.state)) {
                add(command(std::string(ConfigNotices::restartNeededLine), MenuAction::startDaemon));
            }
            add(command("Stop daemon", MenuAction::stopDaemon));
            return;
        case DaemonState::Case::stale: add(command("Restart daemon", MenuAction::startDaemon)); return;
        case DaemonState::Case::stopped:
        case DaemonState::Case::unreadable:
        case DaemonState::Case::missing: add(command("Start daemon", MenuAction::startDaemon)); return;
        }
    }

    const StatusMenu::Inputs& m_in;
    const StatusFile* m_file; // null when none is loaded
    std::span<const SessionStatus> m_sessions;
    StatusMenu m_menu;
};

} // namespace

StatusMenu StatusMenu::make(const Inputs& inputs) {
    return Builder(inputs).build();
}

const SessionStatus* StatusMenu::sessionByTag(int tag) const& {
    const auto position = static_cast<std::size_t>(tag) - 1;
    return tag >= 1 && position < sessions.size() ? &sessions[position] : nullptr;
}

} // namespace menubar
