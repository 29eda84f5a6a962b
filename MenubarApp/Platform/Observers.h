#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace menubar {

/// What keeps a callback subscribed: it is called until this goes. Outliving what it subscribed to is fine. Keep it as
/// the last member, so that it goes first. One thread.
using Subscription = std::shared_ptr<const std::function<void()>>;

/// The callbacks of those who want to know of a change, called in the order of subscribing. A callback may subscribe,
/// unsubscribe (itself too) and destroy this object: who was unsubscribed is not called any more. One thread.
class Observers {
public:
    [[nodiscard]] Subscription add(std::function<void()> callback) {
        auto subscription = std::make_shared<const std::function<void()>>(std::move(callback));
        std::erase_if(m_callbacks, [](const auto& known) { return known.expired(); });
        m_callbacks.push_back(subscription);
        return subscription;
    }

    void notify() const {
        const auto callbacks = m_callbacks; // this object may go meanwhile
        for (const auto& known : callbacks) {
            if (const Subscription callback = known.lock()) {
                (*callback)();
            }
        }
    }

private:
    std::vector<std::weak_ptr<const std::function<void()>>> m_callbacks;
};

} // namespace menubar
