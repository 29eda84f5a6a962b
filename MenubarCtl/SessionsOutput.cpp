#include "MenubarCtl/SessionsOutput.h"

#include "MenubarCore/Menu/Formatting.h"
#include "MenubarCore/Text/DisplayColumns.h"
#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCtl/JSONOutput.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace menubar::ctl {

namespace {

constexpr std::size_t gap = 2;

enum Column : std::uint8_t { number, name, percent, lifecycle, cache, columnCount };

/// The texts of one line, safe to draw.
using Row = std::array<std::string, columnCount>;
using Widths = std::array<std::size_t, columnCount>;

Row rowOf(const SessionStatus& session, std::size_t position, Date now, bool cuts) {
    return {std::to_string(position), cuts ? displayTitle(session.displayName()) : displayText(session.displayName()),
            Formatting::percent(session.contextPct), std::string(label(session.lifecycle)),
            session.cacheExpiresAt ? Formatting::cacheExpiry(*session.cacheExpiresAt, now) : ""};
}

Widths widthsOf(const std::vector<Row>& rows, const TextStyle& style) {
    constexpr std::size_t leastName = 8;
    Widths widths{1, 0, std::string_view("100%").size(), 0, 0};
    for (const Row& row : rows) {
        for (std::size_t column = 0; column < columnCount; ++column) {
            widths[column] = std::max(widths[column], displayColumns(row[column]));
        }
    }
    if (style.cuts) {
        const std::size_t others = widths[number] + gap + 1 + 1 + gap + widths[percent] + gap + widths[lifecycle] +
                                   (widths[cache] == 0 ? 0 : gap + widths[cache]);
        const std::size_t room = style.columns > others + leastName ? style.columns - others : leastName;
        widths[name] = std::min(widths[name], room);
    }
    return widths;
}

/// The line without a look, cut, and then dressed: an escape sequence takes no column.
std::string lineOf(const Row& row, const SessionStatus& session, const Widths& widths, const TextStyle& style) {
    const std::string shownName = style.cuts ? fittedToColumns(row[name], widths[name]) : row[name];
    const std::string sign(signOf(session.level));
    const std::string head = padding(row[number], widths[number]) + row[number] + std::string(gap, ' ');
    std::string tail = " " + shownName + padding(shownName, widths[name] + gap) +
                       padding(row[percent], widths[percent]) + row[percent] + std::string(gap, ' ') + row[lifecycle];
    tail += row[cache].empty() ? "" : padding(row[lifecycle], widths[lifecycle] + gap) + row[cache];
    if (style.cuts) {
        const std::size_t taken = displayColumns(head) + displayColumns(sign);
        if (taken > style.columns) {
            return fittedToColumns(head + sign, style.columns);
        }
        tail = fittedToColumns(tail, style.columns - taken);
    }
    const bool isWell = session.level == SessionLevel::ok;
    const std::string_view colour = colourOf(isWell ? StatusItemPresentation::Tone::ok : toneOf(session.level));
    const bool waits = session.lifecycle == SessionLifecycle::needsInput;
    return drawn(head, {.weight = "2"}, style.styling) + drawn(sign, {.colour = colour}, style.styling) +
           drawn(tail, {.weight = waits ? "1" : ""}, style.styling);
}

template <typename Number>
JSONValue numberOrNull(const std::optional<Number>& value) {
    return value ? JSONValue(static_cast<double>(*value)) : JSONValue();
}

JSONValue sessionValue(const SessionStatus& session, const MenuItem& item) {
    return JSONValue::Object{
        {"cacheExpiresAt", session.cacheExpiresAt ? JSONValue(timestampText(*session.cacheExpiresAt)) : JSONValue()},
        {"contextPct", numberOrNull(session.contextPct)},
        {"contextTokens", numberOrNull(session.contextTokens)},
        {"contextWindow", numberOrNull(session.contextWindow)},
        {"cwd", textOrNull(session.cwd)},
        {"handoff", session.handoff ? text(session.handoff->path) : JSONValue()},
        {"level", rawText(session.level)},
        {"lifecycle", rawText(session.lifecycle)},
        {"line", text(item.title)},
        {"model", textOrNull(session.model)},
        {"name", text(session.displayName())},
        {"provider", textOrNull(session.provider)},
        {"sessionId", textOrNull(session.sessionId)},
        {"shortId", textOrNull(session.shortId)},
        {"surfaceId", textOrNull(session.surfaceId)},
        {"tag", item.tag},
        {"waiting", session.lifecycle == SessionLifecycle::needsInput},
        {"workspaceId", textOrNull(session.workspaceId)},
    };
}

} // namespace

std::vector<std::string> sessionLines(const std::vector<SessionStatus>& sessions, Date now, const TextStyle& style) {
    std::vector<Row> rows;
    rows.reserve(sessions.size());
    for (const SessionStatus& session : sessions) {
        rows.push_back(rowOf(session, rows.size() + 1, now, style.cuts));
    }
    const Widths widths = widthsOf(rows, style);
    std::vector<std::string> lines;
    lines.reserve(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        lines.push_back(lineOf(rows[i], sessions[i], widths, style));
    }
    return lines;
}

JSONValue sessionsDocument(const StatusPoll& poll, const StatusMenu& menu, const TimeZone& timeZone) {
    JSONValue::Array sessions;
    for (const MenuItem& item : menu.items) {
        if (const SessionStatus* session = menu.sessionByTag(item.tag)) {
            sessions.push_back(sessionValue(*session, item));
        }
    }
    return JSONValue::Object{{"sessions", std::move(sessions)}, {"state", stateDocument(poll, timeZone)}};
}

} // namespace menubar::ctl
