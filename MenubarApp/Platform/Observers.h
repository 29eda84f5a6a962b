#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

namespace menubar {

/// What keeps a callback subscribed: it is called until this object goes. Outliving what it subscribed to is fine. Keep
/// it as the last member, so that it goes first. One thread.
class [[nodiscard]] Subscription {
public:
    Subscription() = default;
    Subscription(Subscription&& other) noexcept;
    Subscription& operator=(Subscription&& other) noexcept;
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription();

private:
    friend class Observers;
    struct Callbacks;

    Subscription(const std::shared_ptr<Callbacks>& callbacks, std::uint64_t id) : m_callbacks(callbacks), m_id(id) {}

    std::weak_ptr<Callbacks> m_callbacks;
    std::uint64_t m_id = 0;
};

/// The callbacks of those who want to know of a change, called in the order of subscribing. A callback may subscribe,
/// unsubscribe (itself too) and destroy this object: who was unsubscribed is not called any more. One thread.
class Observers {
public:
    Observers();

    Subscription add(std::function<void()> callback);
    void notify() const;

private:
    std::shared_ptr<Subscription::Callbacks> m_callbacks;
};

} // namespace menubar
