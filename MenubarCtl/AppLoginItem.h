#pragma once

#include "MenubarApp/Platform/LoginItem.h"
#include "MenubarApp/Platform/LoginRequest.h"

#include <expected>
#include <functional>
#include <memory>

namespace menubar::ctl {

/// The login item as the app itself tells of it and changes it. Each call runs the app and waits for its answer.
class AppLoginItem final : public LoginItem {
public:
    using Ask = std::function<std::expected<LoginRequest::Reply, LoginItemError>(LoginRequest::Kind)>;

    /// Asks for the state first: an app that does not answer is the error.
    [[nodiscard]] static std::expected<std::unique_ptr<LoginItem>, LoginItemError> create(Ask ask);

    [[nodiscard]] LoginItemState state() const override { return m_state; }

    [[nodiscard]] std::expected<LoginItemState, LoginItemError> turnOn() override;
    [[nodiscard]] std::expected<LoginItemState, LoginItemError> turnOff() override;

private:
    explicit AppLoginItem(Ask ask) : m_ask(std::move(ask)) {}

    std::expected<LoginItemState, LoginItemError> request(LoginRequest::Kind kind);

    Ask m_ask;
    LoginItemState m_state = LoginItemState::off;
};

} // namespace menubar::ctl
