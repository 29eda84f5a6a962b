#pragma once

#include "MenubarApp/Platform/Clock.h"

#include <string>

namespace menubar {

/// The system's clock, and its zone as the C library reads it: from `TZ` in any of its forms, else from /etc/localtime.
/// Main thread.
class SystemClock final : public Clock {
public:
    [[nodiscard]] Date now() const override;

    /// Looks whether the setting changed, which costs a system call; any TimeZone from here follows it then, and may be
    /// asked on any thread.
    [[nodiscard]] TimeZone timeZone() const override;

    /// Makes a zone of the zone database this process's own. Child processes see it as well, as if the person had set
    /// `TZ`. Only while there is one thread.
    static void useZone(const std::string& name);
};

} // namespace menubar
