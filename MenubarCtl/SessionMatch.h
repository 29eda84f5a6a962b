#pragma once

#include "MenubarCore/Status/StatusFile.h"

#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace menubar::ctl {

/// The one session that `name` stands for: by its session id, else by its short id, else by its display name, letter
/// for letter. What matches by an earlier rule hides what would match by a later one. Otherwise the text for people:
/// no such session, or which ones the name stands for. The pointer points into `sessions`. Pure.
[[nodiscard]] std::expected<const SessionStatus*, std::string> findSession(const std::vector<SessionStatus>& sessions,
                                                                           std::string_view name);

} // namespace menubar::ctl
