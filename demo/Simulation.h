#pragma once

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Status/StatusFile.h"
#include "MenubarCore/Text/Date.h"

#include "demo/DemoConfig.h"
#include "demo/DemoSession.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace menubar::demo {

/// The stand-in daemon's world: half a dozen scripted sessions, the events that their changes cause, and the hand-off
/// documents that their agents would write. It does no input or output and reads no clock; the same options and the
/// same times give the same frames.
class Simulation {
public:
    /// The ring of recent events holds this many.
    static constexpr std::size_t eventLimit = 20;

    struct Options {
        Date startedAt;
        std::int64_t daemonPid = 0;
        std::int64_t intervalMs = 1000;
        std::string handoffsDirectory;
        std::string homeDirectory; ///< the sessions' working directories lie in it
        std::uint32_t seed = 0;    ///< shifts the sessions' cycles against one another
        DemoConfig config{};
    };

    struct HandoffDocument {
        std::string path;
        std::string text;
    };

    /// What one poll finds: the documents must be written before the status, which names them.
    struct Frame {
        std::vector<HandoffDocument> handoffs;
        JSONValue::Object status; ///< the status file without `configFile`
    };

    explicit Simulation(Options options);

    /// One poll. `now` is at or after the start and never before an earlier poll's.
    [[nodiscard]] Frame poll(Date now);

private:
    struct Session {
        const SessionScript* script = nullptr;
        SessionMoment moment;
        std::optional<Date> handoffWrittenAt;
    };

    void recordHistory();
    void compare(Session& session, const SessionMoment& before, Date now, Frame& frame);
    void record(const Session& session, Date at, EventKind kind, EventLevel level, std::string text,
                bool dryRun = false);
    [[nodiscard]] HandoffDocument writeHandoff(Session& session, Date at);
    [[nodiscard]] std::string handoffPath(const SessionScript& script) const;
    [[nodiscard]] JSONValue sessionValue(const Session& session, Date now) const;

    Options m_options;
    Thresholds m_thresholds;
    std::vector<Session> m_sessions;
    std::deque<JSONValue> m_events; ///< oldest first
    bool m_polled = false;
};

} // namespace menubar::demo
