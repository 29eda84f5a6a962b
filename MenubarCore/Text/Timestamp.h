#pragma once

#include "MenubarCore/Text/Date.h"

#include <optional>
#include <string_view>

namespace menubar {

/// Reads an ISO 8601 internet date-time: `YYYY-MM-DDThh:mm:ss`, an optional fraction of one or more digits, then `Z`
/// or `±hh:mm`. Digits beyond microseconds are cut. The calendar is checked (no 30 February, no hour 24, no second
/// 60); years 0001 to 9999; offsets up to 23:59. Upper-case letters only. Absent for anything else, surrounding
/// blanks included. Uses no locale and no local time zone. Any thread.
[[nodiscard]] std::optional<Date> parseTimestamp(std::string_view text);

} // namespace menubar
