#pragma once

#include "MenubarCore/Text/DaylightRule.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace menubar {

/// A compiled file of the zone database (RFC 8536, version 2 or later): every change of a zone's offset so far, and the
/// rule by which it goes on. A value; any thread.
class ZoneFile {
public:
    /// Absent for bytes that are no such file, or one that counts leap seconds.
    [[nodiscard]] static std::optional<ZoneFile> parse(std::string_view bytes);

    /// How far local time is ahead of UTC at an instant, counted from 1970. Logarithmic in the number of changes.
    [[nodiscard]] std::chrono::seconds utcOffset(std::chrono::seconds sinceEpoch) const;

private:
    struct Change {
        std::chrono::seconds at; ///< from 1970, in UTC
        std::chrono::seconds offset;
    };

    std::chrono::seconds m_firstOffset{}; // before every change
    std::vector<Change> m_changes;        // ascending
    std::optional<DaylightRule> m_rule;   // after the last change; absent where its offset stays for ever
};

} // namespace menubar
