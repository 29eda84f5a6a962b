#include "MenubarApp/Settings/SettingsLoad.h"

#include <utility>

namespace menubar {

namespace {

std::unexpected<SettingsLoadFailure> failure(std::string title, const std::string& where, const std::string& why) {
    return std::unexpected(SettingsLoadFailure{.title = std::move(title), .detail = where + "\n" + why});
}

} // namespace

SettingsLoadFailure commandNotFound() {
    return {.title = "Daemon command line not found",
            .detail = "The settings window runs ostrel config schema to learn the settings. Install the daemon "
                      "(ostrel install), put ostrel on PATH, or set " +
                      std::string(LaunchAgentCommand::environmentKey) + " to the executable."};
}

LoadReport loadSettings(const LaunchAgentCommand& command, const CommandResult& schema, const std::string& configPath,
                        const FileManager& files) {
    const std::string description = command.describe({"config", "schema"});
    if (schema.status != 0) {
        return {failure("Could not load the settings schema", description,
                        schema.stderr_.empty() ? "exit status " + std::to_string(schema.status) : schema.stderr_)};
    }
    auto decoded = SettingsSchema::decode(schema.stdout_);
    if (!decoded) {
        return {failure("The settings schema could not be read", description, describe(decoded.error()))};
    }
    if (configPath.ends_with('/')) { // a save would make that directory
        return {failure("The config file could not be read", configPath,
                        "The path ends in a slash, so it can only name a directory")};
    }
    if (!files.exists(configPath)) {
        return {LoadedSettings{.form = SettingsForm(*std::move(decoded), {}), .fileContent = {}}, false};
    }
    constexpr const char* title = "The config file could not be read";
    auto contents = files.contents(configPath);
    if (!contents) {
        return {failure(title, configPath, contents.error().message), true};
    }
    auto parsed = SettingsForm::parseFile(*contents);
    if (!parsed) {
        return {failure(title, configPath, describe(parsed.error())), true};
    }
    return {LoadedSettings{.form = SettingsForm(*std::move(decoded), *std::move(parsed)),
                           .fileContent = *std::move(contents)},
            true};
}

} // namespace menubar
