#include "MenubarCtl/SystemLoginItem.h"

#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <system_error>

#include <crt_externs.h>
#include <mach-o/dyld.h>
#include <unistd.h>

namespace menubar::ctl {

namespace {

LoginItemError errorFrom(NSError* error) {
    NSString* const text = [error localizedDescription];
    return {text == nil ? "macOS did not say why it failed" : std::string([text UTF8String])};
}

/// SMAppService's main app is the main bundle of the process that asks: for this program, the bundle that it lies in.
class MainAppLoginItem final : public LoginItem {
  public:
    LoginItemState state() const override {
        switch ([[SMAppService mainAppService] status]) {
        case SMAppServiceStatusEnabled:
            return LoginItemState::on;
        case SMAppServiceStatusRequiresApproval:
            return LoginItemState::awaitsApproval;
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

/// As it was started: a link, where it was one. Empty when the system does not tell.
std::string startedPath() {
    std::uint32_t size = 0;
    _NSGetExecutablePath(nullptr, &size);
    std::string path(size, '\0');
    if (_NSGetExecutablePath(path.data(), &size) != 0) {
        return {};
    }
    path.resize(path.find('\0') == std::string::npos ? path.size() : path.find('\0'));
    return path;
}

bool runsFromTheApp() {
    return [[[NSBundle mainBundle] bundleIdentifier] isEqualToString:@"dev.ostrel.menubar"];
}

/// A package puts a link to this program on PATH, and a process has the bundle that its path, with no link followed,
/// lies in. Returns only when that is no help.
std::error_code restartByRealPath() {
    const std::string started = startedPath();
    std::array<char, PATH_MAX> real{};
    if (started.empty() || realpath(started.c_str(), real.data()) == nullptr) {
        return {errno, std::generic_category()};
    }
    if (started == real.data()) {
        return {};
    }
    execv(real.data(), *_NSGetArgv());
    return {errno, std::generic_category()};
}

} // namespace

std::expected<std::unique_ptr<LoginItem>, LoginItemError> systemLoginItem() {
    if (runsFromTheApp()) {
        return std::make_unique<MainAppLoginItem>();
    }
    if (const std::error_code error = restartByRealPath()) {
        return std::unexpected(LoginItemError{"cannot start again from the app: " + error.message()});
    }
    return std::unexpected(LoginItemError{
        "this program does not run from the app; use the one in ostrel-menubar.app/Contents/MacOS, or a link to it"});
}

} // namespace menubar::ctl
