#include "MenubarApp/Platform/LoginRequest.h"

#include <algorithm>
#include <array>
#include <utility>

namespace menubar {

namespace {

using State = LoginItemState;
using KindText = std::pair<LoginRequest::Kind, std::string_view>;

constexpr std::array<KindText, 3> kinds{
    {{LoginRequest::Kind::status, "status"}, {LoginRequest::Kind::on, "on"}, {LoginRequest::Kind::off, "off"}}};

constexpr std::array<std::pair<State, std::string_view>, 3> words{
    {{State::off, "off"}, {State::on, "on"}, {State::awaitsApproval, "waiting for approval"}}};

std::expected<State, LoginItemError> act(LoginRequest::Kind kind, LoginItem& item) {
    switch (kind) {
    case LoginRequest::Kind::status: return item.state();
    case LoginRequest::Kind::on: return item.turnOn();
    case LoginRequest::Kind::off: return item.turnOff();
    }
    return item.state();
}

std::string_view withoutLineFeed(std::string_view text) {
    return text.substr(0, text.find('\n'));
}

} // namespace

std::string_view LoginRequest::rawText(Kind kind) {
    return std::ranges::find(kinds, kind, &KindText::first)->second;
}

std::optional<LoginRequest::Kind> LoginRequest::from(const Environment& environment) {
    const auto* const found = std::ranges::find(kinds, menubar::variable(environment, variable), &KindText::second);
    return found == kinds.end() ? std::nullopt : std::optional(found->first);
}

LoginRequest::Reply LoginRequest::answer(Kind kind, LoginItem* item) {
    if (item == nullptr) {
        return {.exitStatus = 1, .output = "", .errors = "only macOS can start the app at login\n"};
    }
    const auto state = act(kind, *item);
    if (!state) {
        return {.exitStatus = 1, .output = "", .errors = state.error().message + "\n"};
    }
    for (const auto& [each, word] : words) {
        if (each == *state) {
            return {.exitStatus = 0, .output = std::string(word) + "\n", .errors = ""};
        }
    }
    return {.exitStatus = 1, .output = "", .errors = "unknown state\n"};
}

std::expected<LoginItemState, LoginItemError> LoginRequest::read(const Reply& reply) {
    for (const auto& [state, word] : words) {
        if (reply.exitStatus == 0 && withoutLineFeed(reply.output) == word) {
            return state;
        }
    }
    const std::string_view reason = withoutLineFeed(reply.errors);
    return std::unexpected(
        LoginItemError{reason.empty() ? "the app did not answer (status " + std::to_string(reply.exitStatus) + ")"
                                      : std::string(reason)});
}

} // namespace menubar
