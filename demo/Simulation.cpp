#include "demo/Simulation.h"

#include "demo/Timestamp.h"

#include <chrono>
#include <cmath>
#include <utility>

namespace menubar::demo {

using namespace std::chrono_literals;

namespace {

/// Once in this time one provider's sessions cannot be listed for a while.
constexpr double failureCycleSeconds = 240;
constexpr double failureFromSecond = 150;
constexpr double failureSeconds = 25;

Date plusSeconds(Date date, double seconds) {
    return date + std::chrono::duration_cast<Date::duration>(std::chrono::duration<double>(seconds));
}

std::string percentText(double percent) {
    return std::to_string(std::lround(percent)) + "%";
}

JSONValue optionalText(const char* text) {
    return text == nullptr ? JSONValue() : JSONValue(text);
}

JSONValue integer(std::int64_t value) {
    return {static_cast<double>(value)};
}

JSONValue providerFailures(double elapsed) {
    const double second = std::fmod(elapsed, failureCycleSeconds);
    if (second < failureFromSecond || second >= failureFromSecond + failureSeconds) {
        return JSONValue::Array{};
    }
    return JSONValue::Array{
        JSONValue::Object{{"provider", "zephyr"}, {"reason", "its session store is locked by another process"}}};
}

std::string handoffText(const SessionScript& script, double contextPct, Date at) {
    std::string text = "# Hand-off: ";
    text += script.dirName;
    text += "\n\nWritten " + timestampText(at) + " by the stand-in daemon for session " + script.sessionId + ".\n\n";
    text += "- Context: " + percentText(contextPct) + " of " + std::to_string(script.contextWindow) + " tokens\n";
    text += "- Model: ";
    text += script.model;
    text += "\n\nThere is no agent behind this session: it is made up for trying ostrel-menubar.\n";
    return text;
}

} // namespace

Simulation::Simulation(Options options)
    : m_options(std::move(options)), m_thresholds{.warn = m_options.config.number("warn-context"),
                                                  .critical = m_options.config.number("critical-context")} {
    for (const SessionScript& script : sessionScripts()) {
        m_sessions.push_back(
            {.script = &script, .moment = momentOf(script, 0, m_options.seed, m_thresholds), .handoffWrittenAt = {}});
    }
    recordHistory();
}

/// What happened before the start, so that the first frame is as full as a later one.
void Simulation::recordHistory() {
    const Date start = m_options.startedAt;
    const Session& web = m_sessions[0];
    const Session& api = m_sessions[1];
    const Session& billing = m_sessions[2];
    const Session& search = m_sessions[3];
    record(billing, start - 38min, EventKind::handoff, EventLevel::info, "billing: wrote e03d91.md at 92%");
    record(billing, start - 37min, EventKind::notify, EventLevel::ok, "context compacted to 18%");
    record(search, start - 21min, EventKind::notify, EventLevel::info, "session found in the store");
    record(api, start - 11min, EventKind::notify, EventLevel::warn, "context at 70%");
    record(web, start - 5min, EventKind::notify, EventLevel::critical, "context at 90%");
    record(web, start - 5min + 2s, EventKind::inject, EventLevel::info, "asked for a hand-off document", true);
    record(web, start - 4min, EventKind::handoff, EventLevel::info, "web: wrote 7c1f02.md at 92%");
    record(billing, start - 90s, EventKind::notify, EventLevel::warn, "context at 72%, cache expires in 1m");
}

Simulation::Frame Simulation::poll(Date now) {
    Frame frame;
    const double elapsed = secondsBetween(m_options.startedAt, now);
    JSONValue::Array sessions;
    for (Session& session : m_sessions) {
        if (!m_polled && session.script->earlierHandoffMinutes > 0) {
            const auto age = std::chrono::minutes(session.script->earlierHandoffMinutes);
            frame.handoffs.push_back(writeHandoff(session, m_options.startedAt - age));
        }
        const SessionMoment before = session.moment;
        session.moment = momentOf(*session.script, elapsed, m_options.seed, m_thresholds);
        compare(session, before, now, frame);
        sessions.push_back(sessionValue(session, now));
    }
    m_polled = true;
    frame.status = {
        {"version", 1},
        {"daemonPid", integer(m_options.daemonPid)},
        {"startedAt", timestampText(m_options.startedAt)},
        {"at", timestampText(now)},
        {"intervalMs", integer(m_options.intervalMs)},
        {"config", m_options.config.effective()},
        {"configSources", m_options.config.sourceTexts()},
        {"sessions", std::move(sessions)},
        {"providerFailures", providerFailures(elapsed)},
        {"events", JSONValue::Array(m_events.begin(), m_events.end())},
    };
    return frame;
}

/// Turns a session's changes since the last poll into events and hand-offs.
void Simulation::compare(Session& session, const SessionMoment& before, Date now, Frame& frame) {
    const SessionMoment& after = session.moment;
    if (after.compactions > before.compactions) {
        record(session, now, EventKind::notify, EventLevel::ok,
               "context compacted to " + percentText(after.contextPct));
        return;
    }
    const SessionLevel levelBefore = levelOf(before.contextPct, m_thresholds);
    const SessionLevel levelAfter = levelOf(after.contextPct, m_thresholds);
    if (rank(levelAfter) > rank(levelBefore)) {
        const bool critical = levelAfter == SessionLevel::critical;
        record(session, now, EventKind::notify, critical ? EventLevel::critical : EventLevel::warn,
               "context at " + percentText(after.contextPct));
        if (critical) {
            record(session, now, EventKind::inject, EventLevel::info, "asked for a hand-off document");
            frame.handoffs.push_back(writeHandoff(session, now));
            record(session, now, EventKind::handoff, EventLevel::info,
                   std::string(session.script->dirName) + ": wrote " + session.script->shortId + ".md at " +
                       percentText(after.contextPct));
        }
    }
    if (before.cacheSecondsLeft >= 0 && after.cacheSecondsLeft < 0) {
        record(session, now, EventKind::notify, EventLevel::warn,
               "prompt cache expired at " + percentText(after.contextPct));
    }
}

void Simulation::record(const Session& session, Date at, EventKind kind, EventLevel level, std::string text,
                        bool dryRun) {
    const SessionScript& script = *session.script;
    m_events.emplace_back(JSONValue::Object{
        {"at", timestampText(at)},
        {"provider", script.provider},
        {"sessionId", script.sessionId},
        {"shortId", script.shortId},
        {"dirName", script.dirName},
        {"kind", rawText(kind)},
        {"level", rawText(level)},
        {"text", std::move(text)},
        {"dryRun", dryRun},
    });
    if (m_events.size() > eventLimit) {
        m_events.pop_front();
    }
}

Simulation::HandoffDocument Simulation::writeHandoff(Session& session, Date at) {
    session.handoffWrittenAt = at;
    return {.path = handoffPath(*session.script), .text = handoffText(*session.script, session.moment.contextPct, at)};
}

std::string Simulation::handoffPath(const SessionScript& script) const {
    return m_options.handoffsDirectory + "/" + script.shortId + ".md";
}

JSONValue Simulation::sessionValue(const Session& session, Date now) const {
    const SessionScript& script = *session.script;
    const SessionMoment& moment = session.moment;
    const Date lastActivity = plusSeconds(now, -moment.idleSeconds);
    JSONValue::Object value{
        {"provider", script.provider},
        {"modelProvider", script.modelProvider},
        {"parentSessionId", optionalText(script.parentSessionId)},
        {"sessionId", script.sessionId},
        {"shortId", script.shortId},
        {"cwd", m_options.homeDirectory + "/projects/" + script.dirName},
        {"dirName", script.dirName},
        {"model", script.model},
        {"contextWindow", integer(script.contextWindow)},
        {"contextSource", rawText(moment.contextVisible ? script.contextSource : ContextSource::unavailable)},
        {"level", rawText(moment.level)},
        {"lifecycle", rawText(moment.lifecycle)},
        {"source", rawText(script.hasTerminal ? SessionSource::store : SessionSource::scan)},
        {"lastActivityAt", timestampText(lastActivity)},
        {"cacheExpiresAt", timestampText(plusSeconds(now, moment.cacheSecondsLeft))},
        {"cacheTtlMs", integer(std::int64_t{1000} * script.cacheTtlSeconds)},
    };
    if (moment.contextVisible) {
        const double tokens = std::round(static_cast<double>(script.contextWindow) * moment.contextPct / 100);
        value["contextTokens"] = tokens;
        value["contextPct"] = moment.contextPct;
        value["contextObservedAt"] = timestampText(lastActivity);
    }
    if (script.hasTerminal) {
        value["workspaceId"] = std::string("workspace:") + script.provider;
        value["surfaceId"] = std::string("surface:") + script.shortId;
        value["currentForSurface"] = true;
        value["capabilities"] = JSONValue::Object{{"message", true}};
    } else {
        value["capabilities"] = JSONValue::Object{{"message", false}, {"reason", "runs outside the terminal"}};
    }
    if (session.handoffWrittenAt) {
        value["handoff"] = JSONValue::Object{
            {"path", handoffPath(script)},
            {"writtenAt", timestampText(*session.handoffWrittenAt)},
            {"location", rawText(HandoffLocation::scratchpad)},
        };
    }
    return value;
}

} // namespace menubar::demo
