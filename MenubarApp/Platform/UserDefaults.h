#pragma once

#include "MenubarCore/System/Environment.h"
#include "MenubarCore/System/Interface.h"

#include <optional>
#include <string>
#include <string_view>

namespace menubar {

/// The app's stored preferences. Main thread.
class UserDefaults : public Interface {
public:
    /// Names another domain, so that a test leaves a person's preferences alone.
    static constexpr std::string_view domainKey = "OSTREL_MENUBAR_DEFAULTS_DOMAIN";

    /// Where they are kept: "ostrel-menubar", whatever the bundle's identifier is, unless the variable names another
    /// domain.
    [[nodiscard]] static std::string domain(const Environment& environment) {
        const std::string_view named = variable(environment, domainKey);
        return std::string(named.empty() ? "ostrel-menubar" : named);
    }

    /// The stored value when it is a bool; absent when there is none or it is something else. Sees what another
    /// process has written.
    [[nodiscard]] virtual std::optional<bool> boolValue(std::string_view key) const = 0;

    virtual void setBool(std::string_view key, bool value) = 0;
};

} // namespace menubar
