#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/AppKit/Desktop.h"

#import <ServiceManagement/ServiceManagement.h>

namespace menubar {

namespace {

LoginItemError errorFrom(NSError* error) {
    NSString* const text = [error localizedDescription];
    return {text == nil ? "macOS did not say why it failed" : toString(text)};
}

/// SMAppService's main app is the main bundle of the process that asks.
class MainAppLoginItem final : public LoginItem {
public:
    LoginItemState state() const override {
        switch ([[SMAppService mainAppService] status]) {
        case SMAppServiceStatusEnabled: return LoginItemState::on;
        case SMAppServiceStatusRequiresApproval: return LoginItemState::awaitsApproval;
        case SMAppServiceStatusNotRegistered:
        case SMAppServiceStatusNotFound: // what some versions say of an app that was never registered
            break;
        }
        return LoginItemState::off;
    }

    std::expected<LoginItemState, LoginItemError> turnOn() override {
        // Registering what awaits approval is an error, and no news.
        NSError* error = nil;
        if (state() == LoginItemState::off && ![[SMAppService mainAppService] registerAndReturnError:&error] &&
            state() != LoginItemState::awaitsApproval) {
            return std::unexpected(errorFrom(error));
        }
        return state();
    }

    std::expected<LoginItemState, LoginItemError> turnOff() override {
        NSError* error = nil;
        if (state() != LoginItemState::off && ![[SMAppService mainAppService] unregisterAndReturnError:&error]) {
            return std::unexpected(errorFrom(error));
        }
        return state();
    }
};

} // namespace

std::unique_ptr<LoginItem> Desktop::makeLoginItem() {
    return std::make_unique<MainAppLoginItem>();
}

} // namespace menubar
