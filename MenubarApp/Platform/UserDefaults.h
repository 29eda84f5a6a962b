#pragma once

#include "MenubarCore/System/Interface.h"

#include <optional>
#include <string>
#include <string_view>

namespace menubar {

/// The app's stored preferences, in the domain "ostrel-menubar". Main thread.
class UserDefaults : public Interface {
public:
    /// Whatever the bundle's identifier is, the preferences are found under this name.
    static constexpr std::string_view domain = "ostrel-menubar";

    /// The stored value when it is a bool; absent when there is none or it is something else. Sees what another
    /// process has written.
    [[nodiscard]] virtual std::optional<bool> boolValue(std::string_view key) const = 0;

    virtual void setBool(std::string_view key, bool value) = 0;
};

} // namespace menubar
