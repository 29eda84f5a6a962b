#pragma once

#include "MenubarApp/Platform/Clock.h"

#include <optional>
#include <string>

namespace menubar {

/// The system's clock and time-zone setting. Main thread.
///
/// The zone is looked up again only when `TZ` or /etc/localtime changed, so that asking at every poll costs a system
/// call and a traveller's clock is still right.
class SystemClock final : public Clock {
public:
    [[nodiscard]] Date now() const override;
    [[nodiscard]] TimeZone timeZone() const override;

private:
    mutable std::string m_zoneKey;
    mutable std::optional<TimeZone> m_zone;
};

} // namespace menubar
