// A stand-in for the ostrel daemon: it watches nothing and makes everything up. It is named "ostrel" so that the app
// and its tests find it as they would find the real one.

#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarCore/Status/StatusFileLocator.h"
#include "MenubarCore/Text/Tilde.h"

#include "demo/ConfigCommand.h"
#include "demo/WatchCommand.h"

#include <charconv>
#include <cstdio>
#include <expected>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace menubar;
using namespace menubar::demo;

constexpr const char* usage = "usage: ostrel watch [--state FILE] [--config FILE] [--interval-ms N] [--seed N]\n"
                              "       ostrel config schema | config validate FILE [--json]\n"
                              "       ostrel --help | --version\n";

constexpr const char* description =
    "\n"
    "This is a stand-in for the ostrel daemon, for trying ostrel-menubar and for its tests. It watches\n"
    "no agents: the sessions, events and hand-off documents that it writes are made up.\n"
    "\n"
    "  watch               write a status file once every interval until interrupted\n"
    "  --state FILE        the status file (default: OSTREL_STATUS_FILE, else\n"
    "                      ~/.local/state/ostrel/status.json); hand-offs go to handoffs/ beside it\n"
    "  --config FILE       the config file, read at the start (default: OSTREL_CONFIG_FILE, else\n"
    "                      ~/.config/ostrel/config.json)\n"
    "  --interval-ms N     milliseconds between two polls, 1 to 3600000, whatever the config file says\n"
    "  --seed N            shift the sessions' cycles against one another (default 0)\n"
    "  config schema       print the settings as a JSON schema with hints for an editor\n"
    "  config validate     say what is wrong with a config file; exit status 1 when anything is\n";

int wrongUsage(std::string_view message) {
    std::fprintf(stderr, "ostrel (stand-in): %.*s\n%s", static_cast<int>(message.size()), message.data(), usage);
    return 2;
}

template <typename Number>
std::optional<Number> number(std::string_view text, Number minimum, Number maximum) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < minimum || value > maximum) {
        return std::nullopt;
    }
    return value;
}

/// Sets one option; false when the name or the value is wrong.
bool setOption(WatchOptions& options, std::string_view name, const std::string& value) {
    if (name == "--state") {
        options.statusPath = value;
        return !value.empty();
    }
    if (name == "--config") {
        options.configPath = value;
        return !value.empty();
    }
    if (name == "--interval-ms") {
        const auto interval = number<std::int64_t>(value, 1, 3'600'000);
        options.interval = std::chrono::milliseconds(interval.value_or(1));
        return interval.has_value();
    }
    if (name == "--seed") {
        const auto seed = number<std::uint32_t>(value, 0, UINT32_MAX);
        options.seed = seed.value_or(0);
        return seed.has_value();
    }
    return false;
}

std::string configPath(const Environment& environment, const std::string& home) {
    const std::string_view named = variable(environment, configFileKey);
    return named.empty() ? home + "/.config/ostrel/config.json" : expandTilde(named, home);
}

std::expected<WatchOptions, std::string> watchOptions(std::span<const std::string> arguments) {
    const Environment environment = processEnvironment();
    WatchOptions options;
    options.home = homeDirectory(environment);
    options.statusPath = StatusFileLocator::path(environment, options.home);
    options.configPath = configPath(environment, options.home);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string name = arguments[i];
        std::string value;
        if (const std::size_t equals = name.find('='); equals != std::string::npos) {
            value = name.substr(equals + 1);
            name.resize(equals);
        } else if (++i < arguments.size()) {
            value = arguments[i];
        } else {
            return std::unexpected(name + " is unknown or needs a value");
        }
        if (!setOption(options, name, value)) {
            name += " is unknown or cannot be \"";
            return std::unexpected(name + value + "\"");
        }
    }
    // The file names the hand-offs beside it and the config file, for readers with another working directory.
    options.statusPath = std::filesystem::absolute(options.statusPath).string();
    options.configPath = std::filesystem::absolute(options.configPath).string();
    return options;
}

int runWatch(std::span<const std::string> arguments) {
    const auto options = watchOptions(arguments);
    return options ? watch(*options) : wrongUsage(options.error());
}

int runConfig(std::span<const std::string> arguments) {
    const auto status = config(arguments);
    return status ? *status : wrongUsage("config needs schema, or validate and a file");
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    if (arguments.empty()) {
        return wrongUsage("a command is missing");
    }
    const std::span<const std::string> rest = std::span(arguments).subspan(1);
    if (arguments[0] == "watch") {
        return runWatch(rest);
    }
    if (arguments[0] == "config") {
        return runConfig(rest);
    }
    if (arguments[0] == "--help") {
        std::printf("%s%s", usage, description);
        return 0;
    }
    if (arguments[0] == "--version") {
        std::printf("ostrel %s (stand-in of ostrel-menubar)\n", MENUBAR_VERSION);
        return 0;
    }
    return wrongUsage("unknown command \"" + arguments[0] + "\"");
}
