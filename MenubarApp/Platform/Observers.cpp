#include "MenubarApp/Platform/Observers.h"

#include <utility>
#include <vector>

namespace menubar {

struct Subscription::Callbacks {
    std::map<std::uint64_t, std::function<void()>> byId;
    std::uint64_t lastId = 0;
};

Subscription::Subscription(Subscription&& other) noexcept
    : m_callbacks(std::exchange(other.m_callbacks, {})), m_id(other.m_id) {}

Subscription& Subscription::operator=(Subscription&& other) noexcept {
    Subscription taken(std::move(other));
    std::swap(m_callbacks, taken.m_callbacks);
    std::swap(m_id, taken.m_id);
    return *this;
}

Subscription::~Subscription() {
    if (const auto callbacks = m_callbacks.lock()) {
        callbacks->byId.erase(m_id);
    }
}

Observers::Observers() : m_callbacks(std::make_shared<Subscription::Callbacks>()) {}

Subscription Observers::add(std::function<void()> callback) {
    const std::uint64_t id = ++m_callbacks->lastId;
    m_callbacks->byId.emplace(id, std::move(callback));
    return {m_callbacks, id};
}

void Observers::notify() const {
    const auto callbacks = m_callbacks; // this object may go meanwhile
    std::vector<std::uint64_t> ids;
    for (const auto& [id, callback] : callbacks->byId) {
        ids.push_back(id);
    }
    for (const std::uint64_t id : ids) {
        if (const auto found = callbacks->byId.find(id); found != callbacks->byId.end()) {
            const auto callback = found->second; // which may unsubscribe itself
            callback();
        }
    }
}

} // namespace menubar
