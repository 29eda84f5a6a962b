#pragma once

#include <expected>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace menubar::demo {

/// The agents that the stand-in for `launchctl` has loaded, kept in a directory from call to call: LABEL.plist links to
/// the property list of a loaded agent; LABEL.pid holds the process id of a running one, LABEL.log its outputs. Agents
/// are neither restarted when they end nor started again after a reboot.
class LaunchDomain {
public:
    explicit LaunchDomain(std::filesystem::path directory) : m_directory(std::move(directory)) {}

    [[nodiscard]] bool isLoaded(const std::string& label) const;
    [[nodiscard]] bool isRunning(const std::string& label) const;

    /// Each gives a reason when it fails.
    using Outcome = std::expected<void, std::string>;

    /// Remembers the agent of a property list, whose file is named LABEL.plist.
    Outcome load(const std::filesystem::path& plist);
    Outcome unload(const std::string& label);

    /// Starts a loaded agent's program, in the directory's own session, and returns when it runs.
    Outcome start(const std::string& label);

    /// Ends a running agent, in the end by force; one that does not run is left alone.
    Outcome stop(const std::string& label);

private:
    [[nodiscard]] std::filesystem::path file(const std::string& label, std::string_view suffix) const;
    [[nodiscard]] std::expected<std::vector<std::string>, std::string> words(const std::string& label) const;
    [[nodiscard]] pid_t processOf(const std::string& label) const;

    std::filesystem::path m_directory;
};

} // namespace menubar::demo
