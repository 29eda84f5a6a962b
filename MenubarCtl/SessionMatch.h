#pragma once

#include "MenubarCore/Status/StatusFile.h"

#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace menubar::ctl {

/// A session, or the text for people that says why there is none. The pointer points into the sessions.
using FoundSession = std::expected<const SessionStatus*, std::string>;

/// The one session that `name` stands for: by its session id, else by its short id, else by its display name, letter
/// for letter; else by its number, counted from 1; else by the beginning of any of the three. What matches by an
/// earlier rule hides what would match by a later one. A name that stands for several is refused, with those. Pure.
[[nodiscard]] FoundSession findSession(const std::vector<SessionStatus>& sessions, std::string_view name);

/// The first that needs input.
[[nodiscard]] FoundSession firstWaiting(const std::vector<SessionStatus>& sessions);

} // namespace menubar::ctl
