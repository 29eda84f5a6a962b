#include "MenubarCtl/Commands.h"

namespace menubar::ctl {

namespace {

ExitStatus report(const std::expected<LoginItemState, LoginItemError>& outcome) {
    if (!outcome) {
        return fail(outcome.error().message);
    }
    switch (*outcome) {
    case LoginItemState::off: return print("off\n");
    case LoginItemState::on: return print("on\n");
    case LoginItemState::awaitsApproval: break;
    }
    return fail("macOS waits for your approval: System Settings > General > Login Items");
}

} // namespace

ExitStatus runLogin(const Context& context, LoginItem& item) {
    if (context.line().command == Command::loginOn) {
        return report(item.turnOn());
    }
    if (context.line().command == Command::loginOff) {
        return report(item.turnOff());
    }
    const LoginItemState state = item.state();
    return state == LoginItemState::awaitsApproval ? print("waiting for approval\n") : report(state);
}

} // namespace menubar::ctl
