#pragma once

#include "MenubarApp/StatusMenu/StatusPoll.h"
#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Text/Date.h"
#include "MenubarCore/Text/TimeZone.h"
#include "MenubarCtl/Look.h"

#include <string>
#include <vector>

namespace menubar::ctl {

/// What `sessions` prints. Pure.

/// A sequence number, the sign of the level, the name, the context, the lifecycle and the cache of each session in
/// menu order, in columns two blanks apart. Where the style cuts, it is the name that gives way first.
[[nodiscard]] std::vector<std::string> sessionLines(const std::vector<SessionStatus>& sessions, Date now,
                                                    const TextStyle& style);

/// What `sessions --json` prints.
[[nodiscard]] JSONValue sessionsDocument(const StatusPoll& poll, const StatusMenu& menu, const TimeZone& timeZone);

} // namespace menubar::ctl
