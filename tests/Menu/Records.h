#pragma once

#include "MenubarCore/Status/StatusFile.h"
#include "MenubarCore/Text/TimeZone.h"
#include "MenubarCore/Text/Timestamp.h"

#include <chrono>
#include <string>
#include <utility>

/// Records in a few words, for tests of what is said about them.
namespace menubar::records {

/// An instant that the test writes down itself; a text that is none ends the test.
inline Date date(std::string_view timestamp) {
    return parseTimestamp(timestamp).value();
}

/// The moment at which the tests play.
inline const Date now = date("2025-03-04T14:03:00Z");

inline Date secondsAgo(double seconds) {
    return now - std::chrono::round<Date::duration>(std::chrono::duration<double>(seconds));
}

inline Date secondsAhead(double seconds) {
    return secondsAgo(-seconds);
}

/// A zone that is not a whole number of hours from UTC.
inline const TimeZone kathmandu(std::chrono::minutes(345));

/// A session that has nothing but a name, a percentage and a level.
inline SessionStatus session(std::string name, std::optional<double> contextPct,
                             SessionLevel level = SessionLevel::ok) {
    SessionStatus result;
    result.dirName = std::move(name);
    result.contextPct = contextPct;
    result.level = level;
    return result;
}

inline SessionHandoff handoff(std::string path, std::optional<Date> writtenAt = std::nullopt) {
    return {.path = std::move(path), .writtenAt = writtenAt, .location = HandoffLocation::repo};
}

inline SessionStatus sessionWithHandoff(std::string name, SessionHandoff handoff) {
    SessionStatus result = session(std::move(name), 10);
    result.handoff = std::move(handoff);
    return result;
}

inline OstrelEvent event(std::optional<Date> at, EventLevel level, std::string text) {
    OstrelEvent result;
    result.at = at;
    result.kind = EventKind::notify;
    result.level = level;
    result.text = std::move(text);
    return result;
}

/// A file whose daemon polled `age` seconds ago.
inline StatusFile polled(double age) {
    StatusFile file;
    file.at = secondsAgo(age);
    return file;
}

} // namespace menubar::records
