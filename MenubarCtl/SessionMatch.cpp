#include "MenubarCtl/SessionMatch.h"

#include "MenubarCore/Text/DisplayText.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <ranges>
#include <system_error>

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

/// The session at that number, as people write one.
const SessionStatus* numbered(const std::vector<SessionStatus>& sessions, std::string_view name) {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    const bool isNumber = error == std::errc() && end == name.data() + name.size();
    return isNumber && number >= 1 && number <= sessions.size() ? &sessions[number - 1] : nullptr;
}

struct Match {
    Sessions sessions;
    std::string_view verb = "are called";
};

/// Those of the first rule that matches any.
Match matching(const std::vector<SessionStatus>& sessions, std::string_view name) {
    Sessions found = matching(sessions, [&](const SessionStatus& session) { return session.sessionId == name; });
    if (found.empty()) {
        found = matching(sessions, [&](const SessionStatus& session) { return session.shortId == name; });
    }
    if (found.empty()) {
        found = matching(sessions, [&](const SessionStatus& session) { return session.displayName() == name; });
    }
    if (const SessionStatus* session = found.empty() ? numbered(sessions, name) : nullptr) {
        found.push_back(session);
    }
    if (found.empty() && !name.empty()) {
        found = matching(sessions, [&](const SessionStatus& session) {
            return session.sessionId.value_or("").starts_with(name) || session.shortId.value_or("").starts_with(name) ||
                   session.displayName().starts_with(name);
        });
        return {.sessions = found, .verb = "begin with"};
    }
    return {.sessions = found};
}

std::string ambiguity(const Match& match, std::string_view name) {
    const Sessions& found = match.sessions;
    std::string text = "several sessions " + std::string(match.verb) + " " + quoted(name) + ": ";
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

FoundSession findSession(const std::vector<SessionStatus>& sessions, std::string_view name) {
    const Match match = matching(sessions, name);
    const Sessions& found = match.sessions;
    if (found.empty()) {
        return std::unexpected("no session is called " + quoted(name));
    }
    if (found.size() > 1) {
        return std::unexpected(ambiguity(match, name));
    }
    return found.front();
}

FoundSession firstWaiting(const std::vector<SessionStatus>& sessions) {
    const auto found = std::ranges::find(sessions, SessionLifecycle::needsInput, &SessionStatus::lifecycle);
    if (found == sessions.end()) {
        return std::unexpected("no session needs input");
    }
    return &*found;
}

} // namespace menubar::ctl
