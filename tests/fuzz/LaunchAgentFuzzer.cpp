// Whatever bytes a launch agent's property list holds: reading it ends, soon, and what it gives keeps its promises.

#include "MenubarCore/Daemon/LaunchAgentCommand.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using menubar::LaunchAgentCommand;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto parsed = LaunchAgentCommand::parse({reinterpret_cast<const char*>(data), size});
    if (!parsed) {
        if (description(parsed.error()).empty()) {
            std::abort();
        }
        return 0;
    }
    if (parsed->executable.empty() || parsed->origin != LaunchAgentCommand::Origin::launchAgent) {
        std::abort();
    }
    for (const auto& argument : parsed->leadingArguments) {
        if (argument == "watch") {
            std::abort();
        }
    }
    return 0;
}
