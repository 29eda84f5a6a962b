#pragma once

#include <concepts>
#include <functional>
#include <type_traits>
#include <utility>

namespace menubar {

/// What a view does when it is pressed or edited. Calling an empty handler does nothing. All handlers compare equal: a
/// view that differs from another in its handler only looks the same, and nothing is drawn for it.
template <class... Arguments>
class Handler {
public:
    Handler() = default;

    template <class Function>
        requires(!std::same_as<std::remove_cvref_t<Function>, Handler> && std::invocable<Function&, Arguments...>)
    Handler(Function&& function) : m_function(std::forward<Function>(function)) {}

    void operator()(Arguments... arguments) const {
        if (m_function) {
            m_function(std::forward<Arguments>(arguments)...);
        }
    }

    friend bool operator==(const Handler&, const Handler&) { return true; }

private:
    std::function<void(Arguments...)> m_function;
};

} // namespace menubar
