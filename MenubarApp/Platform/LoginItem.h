#pragma once

#include "MenubarCore/System/Interface.h"

#include <expected>
#include <string>

namespace menubar {

/// Whether the system starts the app when its person logs in.
enum class LoginItemState {
    off,
    on,
    awaitsApproval, ///< asked for, but the person has yet to allow it in the system's settings, or has forbidden it
};

/// Why the system did not do it, or cannot: one line for people.
struct LoginItemError {
    std::string message;

    bool operator==(const LoginItemError&) const = default;
};

/// The app among the things that the system starts at login. The system keeps the state, and the person may change it
/// in the system's settings at any time, so it is asked for anew each time. Main thread.
class LoginItem : public Interface {
public:
    [[nodiscard]] virtual LoginItemState state() const = 0;

    /// Each gives the state that it led to. What is so already is no error.
    [[nodiscard]] virtual std::expected<LoginItemState, LoginItemError> turnOn() = 0;
    [[nodiscard]] virtual std::expected<LoginItemState, LoginItemError> turnOff() = 0;
};

} // namespace menubar
