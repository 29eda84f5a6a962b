#include "MenubarApp/Commands/ChildProcess.h"
#include "MenubarApp/Platform/PosixFileManager.h"
#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarCtl/AppLoginItem.h"
#include "MenubarCtl/ThisSystem.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

namespace menubar::ctl {

namespace {

/// This program's path with no link left in it, such as the one that a package puts on PATH. Empty when the system does
/// not tell.
std::string realPath() {
    std::error_code error;
    const auto path = std::filesystem::canonical(programPath(), error);
    return error ? std::string() : path.string();
}

/// The app beside this program; empty when this program lies in no app.
std::string appBeside(const std::string& program) {
    const std::string folder = program.substr(0, program.rfind('/') + 1);
    std::string app = folder + "ostrel-menubar";
    return folder.ends_with(".app/Contents/MacOS/") && PosixFileManager::isExecutableFile(app) ? app : std::string();
}

std::expected<LoginRequest::Reply, LoginItemError> ask(const std::string& app, LoginRequest::Kind kind,
                                                       std::optional<std::chrono::milliseconds> limit) {
    Environment environment = processEnvironment();
    environment[std::string(LoginRequest::variable)] = LoginRequest::rawText(kind);
    const auto result = ChildProcess::run(app, {}, environment, limit);
    if (!result) {
        return std::unexpected(
            LoginItemError{"cannot run " + app + ": " + std::generic_category().message(result.error().error)});
    }
    if (result->isOverdue) {
        return std::unexpected(LoginItemError{app + " does not answer"});
    }
    return LoginRequest::Reply{
        .exitStatus = result->status, .output = result->standardOutput, .errors = result->standardError};
}

} // namespace

std::expected<std::unique_ptr<LoginItem>, LoginItemError>
systemLoginItem(std::optional<std::chrono::milliseconds> limit) {
    const std::string app = appBeside(realPath());
    if (app.empty()) {
        return std::unexpected(LoginItemError{"this program does not run from the app; use the one in "
                                              "ostrel-menubar.app/Contents/MacOS, or a link to it"});
    }
    return AppLoginItem::create([app, limit](LoginRequest::Kind kind) { return ask(app, kind, limit); });
}

} // namespace menubar::ctl
