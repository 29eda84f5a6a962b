#pragma once

#include "MenubarCore/Status/StatusFile.h"
#include "MenubarCore/Text/Date.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace menubar {

/// One entry of the menu's hand-offs section.
struct HandoffItem {
    std::string path;
    std::string title;
    bool isEnabled = false; ///< whether the file exists

    bool operator==(const HandoffItem&) const = default;
};

/// Order and choice of what the menu lists. Pure; every sort is stable.
namespace Selection {

/// Display order: highest context use first (sessions without a percentage last), then the higher level rank, then the
/// name by Unicode scalar values, then the input's order. A percentage that is not finite cannot come from JSON.
[[nodiscard]] std::vector<SessionStatus> sorted(std::span<const SessionStatus> sessions);

/// The head of `sorted`, without sorting; null for no sessions. Points into `sessions`.
[[nodiscard]] const SessionStatus* worst(std::span<const SessionStatus> sessions);

/// The hand-offs, newest first (undated ones last), then by name. `exists` is asked once for each.
[[nodiscard]] std::vector<HandoffItem> handoffItems(std::span<const SessionStatus> sessions, Date now,
                                                    const std::function<bool(const std::string&)>& exists);

/// The newest `limit` events, newest first, undated ones last.
[[nodiscard]] std::vector<OstrelEvent> recentEvents(std::span<const OstrelEvent> events, std::size_t limit);

} // namespace Selection

} // namespace menubar
