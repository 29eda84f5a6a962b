#pragma once

#include "MenubarApp/Platform/UserDefaults.h"

namespace menubar {

/// NSUserDefaults, in the app's domain. Main thread.
class AppKitUserDefaults final : public UserDefaults {
public:
    [[nodiscard]] std::optional<bool> boolValue(std::string_view key) const override;
    void setBool(std::string_view key, bool value) override;
};

} // namespace menubar
