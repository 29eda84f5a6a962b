#pragma once

#include "MenubarApp/Platform/LoginItem.h"

#include <optional>
#include <string>
#include <vector>

namespace menubar::recording {

/// A system whose answers a test chooses.
class RecordingLoginItem final : public LoginItem {
public:
    [[nodiscard]] LoginItemState state() const override { return current; }

    [[nodiscard]] std::expected<LoginItemState, LoginItemError> turnOn() override {
        return change("on", needsApproval ? LoginItemState::awaitsApproval : LoginItemState::on);
    }

    [[nodiscard]] std::expected<LoginItemState, LoginItemError> turnOff() override {
        return change("off", LoginItemState::off);
    }

    LoginItemState current = LoginItemState::off;
    bool needsApproval = false;
    std::optional<LoginItemError> error; ///< what every change ends with
    std::vector<std::string> calls;

private:
    std::expected<LoginItemState, LoginItemError> change(const char* call, LoginItemState next) {
        calls.emplace_back(call);
        if (error) {
            return std::unexpected(*error);
        }
        return current = next;
    }
};

} // namespace menubar::recording
