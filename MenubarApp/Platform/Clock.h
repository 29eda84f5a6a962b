#pragma once

#include "MenubarCore/System/Interface.h"
#include "MenubarCore/Text/Date.h"
#include "MenubarCore/Text/TimeZone.h"

namespace menubar {

/// The time and the place. Main thread.
class Clock : public Interface {
public:
    [[nodiscard]] virtual Date now() const = 0;

    /// The zone that the person's clock shows now; it follows a change of the system's setting.
    [[nodiscard]] virtual TimeZone timeZone() const = 0;
};

} // namespace menubar
