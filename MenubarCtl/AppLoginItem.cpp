#include "MenubarCtl/AppLoginItem.h"

#include <utility>

namespace menubar::ctl {

std::expected<std::unique_ptr<LoginItem>, LoginItemError> AppLoginItem::create(Ask ask) {
    std::unique_ptr<AppLoginItem> item(new AppLoginItem(std::move(ask)));
    if (const auto state = item->request(LoginRequest::Kind::status); !state) {
        return std::unexpected(state.error());
    }
    return item;
}

std::expected<LoginItemState, LoginItemError> AppLoginItem::turnOn() {
    return request(LoginRequest::Kind::on);
}

std::expected<LoginItemState, LoginItemError> AppLoginItem::turnOff() {
    return request(LoginRequest::Kind::off);
}

std::expected<LoginItemState, LoginItemError> AppLoginItem::request(LoginRequest::Kind kind) {
    const auto reply = m_ask(kind);
    if (!reply) {
        return std::unexpected(reply.error());
    }
    const auto state = LoginRequest::read(*reply);
    if (state) {
        m_state = *state;
    }
    return state;
}

} // namespace menubar::ctl
