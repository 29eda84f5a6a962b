#pragma once

#include "MenubarApp/Platform/LoginItem.h"
#include "MenubarCore/System/Environment.h"

#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace menubar {

/// How the command line has the app register itself: the system takes "the app" to be the bundle of the process that
/// asks, so that the app has to ask. Run with the variable, the app does what it says, prints the outcome, and ends
/// before it has shown anything.
namespace LoginRequest {

inline constexpr std::string_view variable = "OSTREL_MENUBAR_LOGIN";

enum class Kind { status, on, off };

/// The variable's value for a kind of request.
[[nodiscard]] std::string_view rawText(Kind kind);

/// What the variable asks for; nothing when it is not set or says something else.
[[nodiscard]] std::optional<Kind> from(const Environment& environment);

struct Reply {
    int exitStatus = 0;
    std::string output;
    std::string errors;

    bool operator==(const Reply&) const = default;
};

/// The app's side. `item` is null where the system starts nothing at login.
[[nodiscard]] Reply answer(Kind kind, LoginItem* item);

/// The command line's side: what the reply says.
[[nodiscard]] std::expected<LoginItemState, LoginItemError> read(const Reply& reply);

} // namespace LoginRequest

} // namespace menubar
