#include "MenubarCtl/SessionMatch.h"

namespace menubar::ctl {

namespace {

using Sessions = std::vector<const SessionStatus*>;

template <typename Matches>
Sessions matching(const std::vector<SessionStatus>& sessions, Matches matches) {
    Sessions found;
    for (const SessionStatus& session : sessions) {
        if (matches(session)) {
            found.push_back(&session);
        }
    }
    return found;
}

/// Those of the first rule that matches any.
Sessions matching(const std::vector<SessionStatus>& sessions, std::string_view name) {
    Sessions found = matching(sessions, [&](const SessionStatus& session) { return session.sessionId == name; });
    if (found.empty()) {
        found = matching(sessions, [&](const SessionStatus& session) { return session.shortId == name; });
    }
    if (found.empty()) {
        found = matching(sessions, [&](const SessionStatus& session) { return session.displayName() == name; });
    }
    return found;
}

std::string ambiguity(const Sessions& found, std::string_view name) {
    std::string text = "several sessions are called \"" + std::string(name) + "\": ";
    std::string_view separator;
    for (const SessionStatus* session : found) {
        text += separator;
        text += session->displayName();
        text += " (" + session->sessionId.value_or("no session id") + ")";
        separator = ", ";
    }
    return text;
}

} // namespace

std::expected<const SessionStatus*, std::string> findSession(const std::vector<SessionStatus>& sessions,
                                                             std::string_view name) {
    const Sessions found = matching(sessions, name);
    if (found.empty()) {
        return std::unexpected("no session is called \"" + std::string(name) + "\"");
    }
    if (found.size() > 1) {
        return std::unexpected(ambiguity(found, name));
    }
    return found.front();
}

} // namespace menubar::ctl
