#pragma once

#include "MenubarCore/System/Interface.h"

#include <functional>

namespace menubar {

/// Threads for work that blocks. Any thread. Destroying it waits for every action.
class BackgroundQueue : public Interface {
public:
    /// Runs `action` at user-initiated priority. Actions may run side by side and finish in any order.
    virtual void run(std::function<void()> action) = 0;
};

} // namespace menubar
