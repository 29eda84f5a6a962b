#pragma once

#include "MenubarApp/Commands/log.h"
#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarCore/System/Environment.h"

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include <sys/types.h>
#include <unistd.h>

namespace menubar {

/// Where `cmux` is looked for before PATH.
inline constexpr std::array<std::string_view, 2> cmuxCandidates{"/opt/homebrew/bin/cmux", "/usr/local/bin/cmux"};

/// The outside programs whose places are constants of the system. Programs of the product use the defaults; only a
/// test's or the demo's own main function names others, so that nothing a user sets can redirect them.
struct SystemTools {
    std::string launchctl = "/bin/launchctl";
    std::string osascript = "/usr/bin/osascript";
    std::span<const std::string_view> cmux = cmuxCandidates; // what it views lives as long as the process
};

/// Whose commands are run, and with what.
struct CommandContext {
    Environment environment = {}; // PATH is looked up in it; children inherit the process's own
    std::string home = {};
    uid_t uid = 0;
    SystemTools tools = {};
    Log log = menubar::log;

    /// This process's environment, home directory and real user id.
    [[nodiscard]] static CommandContext ofThisProcess(SystemTools tools = {}) {
        Environment environment = processEnvironment();
        std::string home = homeDirectory(environment);
        return {.environment = std::move(environment),
                .home = std::move(home),
                .uid = ::getuid(),
                .tools = std::move(tools)};
    }
};

} // namespace menubar
