#include "MenubarApp/AppKit/Cocoa/DispatchQueue.h"

#include <memory>
#include <utility>

namespace menubar {

DispatchQueue::DispatchQueue() : m_running(dispatch_group_create()) {}

DispatchQueue::~DispatchQueue() {
    dispatch_group_wait(m_running, DISPATCH_TIME_FOREVER);
    dispatch_release(m_running);
}

void DispatchQueue::run(std::function<void()> action) {
    // A block copies what it captures, and may do so more than once: the action itself is shared.
    const auto shared = std::make_shared<const std::function<void()>>(std::move(action));
    dispatch_group_async(m_running, dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), ^{
        (*shared)();
    });
}

} // namespace menubar
