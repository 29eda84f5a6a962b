#pragma once

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Settings/SettingsSchema.h"
#include "MenubarCore/Status/StatusFile.h"
#include "MenubarCore/Text/Date.h"
#include "MenubarCore/Text/TimeZone.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace menubar {

/// Every text about durations, times, percentages, tokens, sessions, hand-offs, events and configuration, so that the
/// wording is fixed in one place. Parts of a line are joined by " · "; "--" stands for a missing or non-finite number.
/// Pure: time and zone are arguments. Any thread.
namespace Formatting {

/// The longest event line, in user-perceived characters, before its dry-run mark.
inline constexpr std::size_t eventLineLimit = 70;

/// "42s", "5m", "1h", "1h 5m"; "expired" when negative, minus infinity included; truncated, never rounded up; hours
/// never become days. A NaN and what is beyond 64 bits give "--".
[[nodiscard]] std::string duration(double seconds);

/// The time since `date`, "5m ago"; "0s ago" when it lies in the future.
[[nodiscard]] std::string ago(Date date, Date now);

/// "cache expires in 5m", "cache expired 5m ago".
[[nodiscard]] std::string cacheExpiry(Date expiresAt, Date now);

/// The 24-hour clock time, "09:05".
[[nodiscard]] std::string clock(Date date, const TimeZone& timeZone);

/// `value` (in percent) rounded to a whole number, halves away from zero, and "%"; "--" when absent or not finite.
[[nodiscard]] std::string percent(std::optional<double> value);

/// Decimal digits grouped in threes with ",".
[[nodiscard]] std::string tokens(std::int64_t count);

/// The name without a leading "claude-"; "unknown" when absent or empty.
[[nodiscard]] std::string modelShort(const std::optional<std::string>& model);

[[nodiscard]] std::string compactTooltip(std::string_view stateTitle, std::string_view percent);

/// `config` may be null.
[[nodiscard]] std::string configSummary(const OstrelConfig* config);

/// Title of a session's menu item.
[[nodiscard]] std::string sessionLine(const SessionStatus& session, Date now);

/// Tooltip of a session's menu item, lines separated by line feeds; may be empty.
[[nodiscard]] std::string sessionDetail(const SessionStatus& session, Date now);

/// Title of a hand-off's menu item; `exists` says whether its file is there.
[[nodiscard]] std::string handoffLine(const SessionStatus& session, Date now, bool exists);

[[nodiscard]] std::string handoffDetail(const SessionHandoff& handoff, Date now);

/// One event: "14:03 [warn] acme api: context at 81%".
[[nodiscard]] std::string eventLine(const OstrelEvent& event, const TimeZone& timeZone);

/// A setting's current value as the settings window shows it.
[[nodiscard]] std::string liveValue(const JSONValue& value, const SettingSpec& spec);

} // namespace Formatting

} // namespace menubar
