#include "MenubarCore/Daemon/LaunchAgentCommand.h"

#include "MenubarCore/Text/Join.h"
#include "MenubarCore/Text/Tilde.h"

#include <algorithm>

namespace menubar {

namespace {

std::optional<LaunchAgentCommand> fromEnvironment(const Environment& environment, std::string_view home,
                                                  const ExecutableLocator::Exists& exists) {
    const std::string_view value = variable(environment, LaunchAgentCommand::environmentKey);
    if (value.empty()) {
        return std::nullopt;
    }
    std::string path = expandTilde(value, home);
    if (!exists(path)) {
        return std::nullopt;
    }
    return LaunchAgentCommand{
        .executable = std::move(path), .leadingArguments = {}, .origin = LaunchAgentCommand::Origin::environment};
}

std::optional<LaunchAgentCommand> fromLaunchAgent(const std::string& plistPath,
                                                  const LaunchAgentCommand::ReadFile& readFile,
                                                  const ExecutableLocator::Exists& exists) {
    const auto bytes = readFile(plistPath);
    if (!bytes) {
        return std::nullopt;
    }
    auto parsed = LaunchAgentCommand::parse(*bytes);
    if (!parsed || !exists(parsed->executable)) {
        return std::nullopt;
    }
    return *std::move(parsed);
}

std::optional<LaunchAgentCommand> fromPath(const Environment& environment, const ExecutableLocator::Exists& exists) {
    auto path = ExecutableLocator::resolve(LaunchAgentCommand::executableName, LaunchAgentCommand::candidates,
                                           variable(environment, "PATH"), exists);
    if (!path) {
        return std::nullopt;
    }
    return LaunchAgentCommand{
        .executable = *std::move(path), .leadingArguments = {}, .origin = LaunchAgentCommand::Origin::path};
}

} // namespace

std::optional<LaunchAgentCommand> LaunchAgentCommand::resolve(const Environment& environment, std::string_view home,
                                                              const std::string& plistPath, const ReadFile& readFile,
                                                              const ExecutableLocator::Exists& exists) {
    if (auto command = fromEnvironment(environment, home, exists)) {
        return command;
    }
    if (auto command = fromLaunchAgent(plistPath, readFile, exists)) {
        return command;
    }
    return fromPath(environment, exists);
}

std::expected<LaunchAgentCommand, LaunchAgentCommand::ParseFailure> LaunchAgentCommand::parse(std::string_view plist) {
    const auto list = PropertyList::read(plist);
    if (!list) {
        return std::unexpected(list.error());
    }
    if (!list->isDictionary()) {
        return std::unexpected(ParseError::notAPlist);
    }
    const auto words = list->strings("ProgramArguments");
    if (!words || words->empty() || words->front().empty()) {
        return std::unexpected(ParseError::missingProgramArguments);
    }
    const auto watch = std::ranges::find(*words, "watch");
    const auto first = words->begin();
    const auto end = watch == words->end() || watch == first ? first + 1 : watch;
    return LaunchAgentCommand{
        .executable = *first, .leadingArguments = {first + 1, end}, .origin = Origin::launchAgent};
}

std::vector<std::string> LaunchAgentCommand::arguments(const std::vector<std::string>& subcommand) const {
    std::vector<std::string> all = leadingArguments;
    all.insert(all.end(), subcommand.begin(), subcommand.end());
    return all;
}

std::string LaunchAgentCommand::describe(const std::vector<std::string>& subcommand) const {
    return commandLine(executable, arguments(subcommand));
}

std::string_view description(LaunchAgentCommand::ParseError error) {
    switch (error) {
    case LaunchAgentCommand::ParseError::notAPlist: return "the launch agent plist could not be read";
    case LaunchAgentCommand::ParseError::missingProgramArguments:
        return "the launch agent plist has no ProgramArguments";
    }
    return "";
}

std::string description(const LaunchAgentCommand::ParseFailure& failure) {
    if (const auto* error = std::get_if<LaunchAgentCommand::ParseError>(&failure)) {
        return std::string(description(*error));
    }
    return std::get<PropertyListError>(failure).message;
}

} // namespace menubar
