#include "MenubarCore/Menu/Formatting.h"

#include "MenubarCore/Text/Graphemes.h"
#include "MenubarCore/Text/Join.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <ranges>
#include <variant>
#include <vector>

namespace menubar {

namespace {

constexpr std::string_view placeholder = "--";
constexpr std::string_view separator = " · ";

std::string concat(std::initializer_list<std::string_view> parts) {
    return joined(parts, "");
}

/// One past the largest 64-bit integer; exactly a double.
constexpr double beyondIntegers = 9223372036854775808.0;

std::string twoDigits(int number) {
    return {static_cast<char>('0' + (number / 10)), static_cast<char>('0' + (number % 10))};
}

/// What there is to say about how the context figures were obtained; empty for nothing.
std::string_view contextNote(std::optional<ContextSource> source) {
    if (!source) {
        return "";
    }
    switch (*source) {
    case ContextSource::configured: return "context window configured";
    case ContextSource::estimated: return "context estimate";
    case ContextSource::unavailable: return "context unavailable";
    case ContextSource::reported:
    case ContextSource::unknown: return "";
    }
    return "";
}

std::string_view eventName(const OstrelEvent& event) {
    if (event.dirName) {
        return *event.dirName;
    }
    return event.shortId ? std::string_view(*event.shortId) : "session";
}

struct LiveText {
    const SettingSpec& spec;

    std::string operator()(bool value) const { return value ? "on" : "off"; }

    std::string operator()(double value) const {
        if (spec.control.kind() == SettingControl::Kind::percent) {
            return Formatting::percent(value);
        }
        if (spec.control.kind() == SettingControl::Kind::duration) {
            return Formatting::duration(value / 1000);
        }
        return JSONValue::format(value);
    }

    std::string operator()(const std::string& value) const { return value.empty() ? "empty" : value; }

    std::string operator()(const JSONValue::Array& values) const {
        return values.empty() ? "none" : joined(values | std::views::transform(&JSONValue::compactText), ", ");
    }

    std::string operator()(const JSONValue::Object& value) const { return JSONValue(value).compactText(); }

    std::string operator()(JSONValue::Null) const { return "not set"; }
};

} // namespace

std::string Formatting::duration(double seconds) {
    if (seconds < 0) {
        return "expired";
    }
    if (!(seconds < beyondIntegers)) { // a NaN, too, is not below
        return std::string(placeholder);
    }
    const auto whole = static_cast<std::int64_t>(seconds);
    if (whole < 60) {
        return std::to_string(whole) + "s";
    }
    if (whole < 3600) {
        return std::to_string(whole / 60) + "m";
    }
    const std::int64_t minutes = whole / 60 % 60;
    const std::string hours = std::to_string(whole / 3600) + "h";
    return minutes == 0 ? hours : hours + " " + std::to_string(minutes) + "m";
}

std::string Formatting::ago(Date date, Date now) {
    const Date past = std::min(date, now);
    return duration(secondsBetween(past, now)) + " ago";
}

std::string Formatting::cacheExpiry(Date expiresAt, Date now) {
    const double remaining = secondsBetween(now, expiresAt);
    return remaining >= 0 ? "cache expires in " + duration(remaining) : "cache expired " + ago(expiresAt, now);
}

std::string Formatting::clock(Date date, const TimeZone& timeZone) {
    const ClockTime time = timeZone.clockTime(date);
    return twoDigits(time.hour) + ":" + twoDigits(time.minute);
}

std::string Formatting::percent(std::optional<double> value) {
    if (!value || !std::isfinite(*value)) {
        return std::string(placeholder);
    }
    const double rounded = std::round(*value);
    const bool isInteger = rounded >= -beyondIntegers && rounded < beyondIntegers;
    return (isInteger ? std::to_string(static_cast<std::int64_t>(rounded)) : JSONValue::format(rounded)) + "%";
}

std::string Formatting::tokens(std::int64_t count) {
    std::string text = std::to_string(count);
    const std::size_t firstDigit = count < 0 ? 1 : 0;
    for (std::size_t index = text.size(); index > firstDigit + 3;) {
        index -= 3;
        text.insert(index, 1, ',');
    }
    return text;
}

std::string Formatting::modelShort(const std::optional<std::string>& model) {
    constexpr std::string_view vendorPrefix = "claude-";
    if (!model || model->empty()) {
        return "unknown";
    }
    return model->starts_with(vendorPrefix) ? model->substr(vendorPrefix.size()) : *model;
}

std::string Formatting::compactTooltip(std::string_view stateTitle, std::string_view percent) {
    return percent == placeholder ? std::string(stateTitle) : concat({stateTitle, " · worst session ", percent});
}

std::string Formatting::configSummary(const OstrelConfig* config) {
    if (config == nullptr) {
        return "No config in status file";
    }
    std::vector<std::string> items = {"warn " + percent(config->warnContextPct),
                                      "critical " + percent(config->criticalContextPct),
                                      config->messageAgents.value_or(false) ? "messaging on" : "messaging off"};
    if (config->dryRun.value_or(false)) {
        items.emplace_back("dry-run");
    }
    return joined(items, separator);
}

std::string Formatting::sessionLine(const SessionStatus& session, Date now) {
    std::vector<std::string> items = {std::string(session.displayName())};
    if (session.provider) {
        items.push_back(*session.provider);
    }
    items.push_back(modelShort(session.model));
    items.push_back(percent(session.contextPct));
    items.emplace_back(label(session.lifecycle));
    if (session.cacheExpiresAt) {
        items.push_back(cacheExpiry(*session.cacheExpiresAt, now));
    }
    if (session.handoff) {
        items.emplace_back("handoff");
    }
    const std::string line = joined(items, separator);
    return session.level == SessionLevel::ok ? line : concat({"[", rawText(session.level), "] ", line});
}

std::string Formatting::sessionDetail(const SessionStatus& session, Date now) {
    std::vector<std::string> lines;
    if (session.contextTokens) {
        const std::string used = tokens(*session.contextTokens);
        lines.push_back(session.contextWindow ? concat({used, " of ", tokens(*session.contextWindow), " tokens"})
                                              : used + " tokens");
    }
    if (const std::string_view note = contextNote(session.contextSource); !note.empty()) {
        lines.emplace_back(note);
    }
    if (session.cwd) {
        lines.push_back(*session.cwd);
    }
    if (session.modelProvider) {
        lines.push_back("model provider: " + *session.modelProvider);
    }
    if (session.parentSessionId) {
        lines.push_back("parent session: " + *session.parentSessionId);
    }
    if (session.capabilities && session.capabilities->reason) {
        lines.push_back("messaging: " + *session.capabilities->reason);
    }
    if (const auto& identifier = session.sessionId ? session.sessionId : session.shortId) {
        lines.push_back(*identifier);
    }
    if (session.handoff) {
        lines.push_back(handoffDetail(*session.handoff, now));
    }
    return joined(lines, "\n");
}

std::string Formatting::handoffLine(const SessionStatus& session, Date now, bool exists) {
    std::string line = concat({"Open handoff", separator, session.displayName()});
    if (session.handoff && session.handoff->writtenAt) {
        line += concat({" (", ago(*session.handoff->writtenAt, now), ")"});
    }
    if (!exists) {
        line += " (missing)";
    }
    return line;
}

std::string Formatting::handoffDetail(const SessionHandoff& handoff, Date now) {
    return handoff.writtenAt ? concat({"Handoff written ", ago(*handoff.writtenAt, now), ": ", handoff.path})
                             : "Handoff: " + handoff.path;
}

std::string Formatting::eventLine(const OstrelEvent& event, const TimeZone& timeZone) {
    const std::string time = event.at ? clock(*event.at, timeZone) : "--:--";
    const std::string_view name = eventName(event);
    const std::string who = event.provider ? concat({*event.provider, " ", name}) : std::string(name);
    std::string body = event.text ? *event.text : std::string(rawText(event.kind));
    std::ranges::replace(body, '\n', ' ');
    std::string_view shownBody = body;
    std::string_view tag = rawText(event.level);
    if (event.kind == EventKind::handoff) {
        // The daemon begins these texts with the name, which already stands in the line.
        tag = rawText(event.kind);
        const std::string prefix = concat({name, ": "});
        if (shownBody.starts_with(prefix)) {
            shownBody.remove_prefix(prefix.size());
        }
    }
    std::string line = cutToGraphemes(concat({time, " [", tag, "] ", who, ": ", shownBody}), eventLineLimit);
    if (event.dryRun.value_or(false)) {
        line += " (dry-run)"; // after the cut, so that it always shows
    }
    return line;
}

std::string Formatting::liveValue(const JSONValue& value, const SettingSpec& spec) {
    return std::visit(LiveText{spec}, value.storage());
}

} // namespace menubar
