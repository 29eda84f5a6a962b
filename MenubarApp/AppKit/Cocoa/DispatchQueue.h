#pragma once

#include "MenubarApp/AppKit/BackgroundQueue.h"

#include <dispatch/dispatch.h>

namespace menubar {

/// The global concurrent queue at user-initiated quality of service. Any thread.
class DispatchQueue final : public BackgroundQueue {
public:
    DispatchQueue();
    ~DispatchQueue() override;

    void run(std::function<void()> action) override;

private:
    dispatch_group_t m_running;
};

} // namespace menubar
