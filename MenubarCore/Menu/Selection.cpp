#include "MenubarCore/Menu/Selection.h"

#include "MenubarCore/Menu/Formatting.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace menubar {

namespace {

// Every order below ends in the place in the input: elements of one array compare by address. So each is total, and
// sorting is stable whatever the algorithm.

/// Before every date that a file can hold.
constexpr Date distantPast = Date::min();

/// What sessions are ordered by, taken once from each, so that comparing neither copies nor allocates.
struct SessionKey {
    const SessionStatus* session;
    double contextPct; // -1 for none
    int levelRank;
    std::string_view name;

    explicit SessionKey(const SessionStatus& of)
        : session(&of), contextPct(of.contextPct.value_or(-1)), levelRank(rank(of.level)), name(of.displayName()) {
        if (std::isnan(contextPct)) {
            contextPct = -1; // an order needs a number
        }
    }

    /// Whether this one is listed before `other`. Comparing UTF-8 bytes is comparing scalar values.
    [[nodiscard]] bool comesBefore(const SessionKey& other) const {
        return std::tie(other.contextPct, other.levelRank, name, session) <
               std::tie(contextPct, levelRank, other.name, other.session);
    }
};

struct HandoffKey {
    const SessionStatus* session;
    Date writtenAt;
    std::string_view name;

    explicit HandoffKey(const SessionStatus& of)
        : session(&of), writtenAt(of.handoff->writtenAt.value_or(distantPast)), name(of.displayName()) {}

    [[nodiscard]] bool comesBefore(const HandoffKey& other) const {
        return std::tie(other.writtenAt, name, session) < std::tie(writtenAt, other.name, other.session);
    }
};

} // namespace

std::vector<SessionStatus> Selection::sorted(std::span<const SessionStatus> sessions) {
    std::vector<SessionKey> keys(sessions.begin(), sessions.end());
    std::ranges::sort(keys, &SessionKey::comesBefore);
    std::vector<SessionStatus> result;
    result.reserve(keys.size());
    for (const SessionKey& key : keys) {
        result.push_back(*key.session);
    }
    return result;
}

const SessionStatus* Selection::worst(std::span<const SessionStatus> sessions) {
    if (sessions.empty()) {
        return nullptr;
    }
    SessionKey worst(sessions.front());
    for (const SessionStatus& session : sessions.subspan(1)) {
        if (const SessionKey key(session); key.comesBefore(worst)) {
            worst = key;
        }
    }
    return worst.session;
}

std::vector<HandoffItem> Selection::handoffItems(std::span<const SessionStatus> sessions, Date now,
                                                 const std::function<bool(const std::string&)>& exists) {
    std::vector<HandoffKey> keys;
    for (const SessionStatus& session : sessions) {
        if (session.handoff) {
            keys.emplace_back(session);
        }
    }
    std::ranges::sort(keys, &HandoffKey::comesBefore);
    std::vector<HandoffItem> items;
    items.reserve(keys.size());
    for (const HandoffKey& key : keys) {
        const std::string& path = key.session->handoff->path;
        const bool isThere = exists(path);
        items.push_back({path, Formatting::handoffLine(*key.session, now, isThere), isThere});
    }
    return items;
}

std::vector<OstrelEvent> Selection::recentEvents(std::span<const OstrelEvent> events, std::size_t limit) {
    std::vector<const OstrelEvent*> newest(events.size());
    std::ranges::transform(events, newest.begin(), [](const OstrelEvent& event) { return &event; });
    const auto end = newest.begin() + static_cast<std::ptrdiff_t>(std::min(limit, newest.size()));
    std::ranges::partial_sort(newest, end, [](const OstrelEvent* a, const OstrelEvent* b) {
        return std::pair(b->at.value_or(distantPast), a) < std::pair(a->at.value_or(distantPast), b);
    });
    std::vector<OstrelEvent> result;
    for (auto event = newest.begin(); event != end; ++event) {
        result.push_back(**event);
    }
    return result;
}

} // namespace menubar
