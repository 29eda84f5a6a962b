#include "MenubarCtl/SessionMatch.h"

#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCore/Text/Quoted.h"

#include <cstddef>
#include <ranges>

namespace menubar::ctl {

namespace {

/// Of sessions that cannot be told apart; the rest is counted.
constexpr std::size_t maximumListed = 10;

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
    std::string text = "several sessions are called " + quoted(name) + ": ";
    std::string_view separator;
    for (const SessionStatus* session : found | std::views::take(maximumListed)) {
        text += separator;
        text += displayTitle(session->displayName());
        text += " (" + displayTitle(session->sessionId.value_or("no session id")) + ")";
        separator = ", ";
    }
    if (found.size() > maximumListed) {
        text += " and " + std::to_string(found.size() - maximumListed) + " more";
    }
    return text;
}

} // namespace

std::expected<const SessionStatus*, std::string> findSession(const std::vector<SessionStatus>& sessions,
                                                             std::string_view name) {
    const Sessions found = matching(sessions, name);
    if (found.empty()) {
        return std::unexpected("no session is called " + quoted(name));
    }
    if (found.size() > 1) {
        return std::unexpected(ambiguity(found, name));
    }
    return found.front();
}

} // namespace menubar::ctl
