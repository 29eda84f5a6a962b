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
        if (state() != LoginItemState::off) {
            return state();
        }
        NSError* error = nil;
        const bool isDone = [[SMAppService mainAppService] registerAndReturnError:&error];
        return outcome(isDone || state() == LoginItemState::awaitsApproval, error);
    }

    std::expected<LoginItemState, LoginItemError> turnOff() override {
        if (state() == LoginItemState::off) {
            return LoginItemState::off;
        }
        NSError* error = nil;
        const bool isDone = [[SMAppService mainAppService] unregisterAndReturnError:&error];
        return outcome(isDone, error);
    }

private:
    std::expected<LoginItemState, LoginItemError> outcome(bool isDone, NSError* error) const {
        if (!isDone) {
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
