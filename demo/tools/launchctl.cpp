// Stands in for launchctl, as far as the app uses it:
//     launchctl kickstart [-k] gui/UID/LABEL
//     launchctl bootstrap gui/UID PLIST
//     launchctl bootout gui/UID/LABEL
//     launchctl print gui/UID/LABEL
//     launchctl getenv NAME
// Agents live in the directory that OSTREL_DEMO_LAUNCHD names. Statuses and texts are those of the real one.

#include "demo/tools/LaunchDomain.h"
#include "demo/tools/Tool.h"

#include <cstdlib>
#include <string>

#include <unistd.h>

namespace {

using menubar::demo::LaunchDomain;
using menubar::demo::Tool;

constexpr int inputOutputError = 5;
constexpr int noSuchProcess = 3;
constexpr int noSuchService = 113;

std::string domainName() {
    return "gui/" + std::to_string(::getuid());
}

/// The label in "gui/UID/LABEL"; empty for anything else.
std::string labelOf(const std::string& service) {
    const std::string prefix = domainName() + "/";
    return service.starts_with(prefix) ? service.substr(prefix.size()) : std::string();
}

int kickstart(const Tool& tool, LaunchDomain& domain, const std::string& label, bool kill) {
    if (!domain.isLoaded(label)) {
        return tool.fail(noSuchService, "Could not find service \"" + label +
                                            "\" in domain for user gui: " + std::to_string(::getuid()));
    }
    if (domain.isRunning(label)) {
        if (!kill) {
            return 0;
        }
        if (const auto stopped = domain.stop(label); !stopped) {
            return tool.fail(inputOutputError, stopped.error());
        }
    }
    const auto started = domain.start(label);
    return started ? 0 : tool.fail(inputOutputError, started.error());
}

int bootstrap(const Tool& tool, LaunchDomain& domain, const std::string& plist) {
    auto outcome = domain.load(plist);
    if (outcome) {
        outcome = domain.start(std::filesystem::path(plist).stem().string());
    }
    return outcome ? 0 : tool.fail(inputOutputError, "Bootstrap failed: 5: Input/output error: " + outcome.error());
}

int bootout(const Tool& tool, LaunchDomain& domain, const std::string& label) {
    if (!domain.isLoaded(label)) {
        return tool.fail(noSuchProcess, "Boot-out failed: 3: No such process");
    }
    auto outcome = domain.stop(label);
    if (outcome) {
        outcome = domain.unload(label);
    }
    return outcome ? 0 : tool.fail(inputOutputError, outcome.error());
}

int print(const Tool& tool, const LaunchDomain& domain, const std::string& label) {
    return domain.isLoaded(label)
               ? 0
               : tool.fail(noSuchService, "Could not find service \"" + label +
                                              "\" in domain for user gui: " + std::to_string(::getuid()));
}

int perform(const Tool& tool, LaunchDomain& domain) {
    const auto words = tool.arguments();
    if (words.size() == 3 && words[0] == "kickstart" && words[1] == "-k" && !labelOf(words[2]).empty()) {
        return kickstart(tool, domain, labelOf(words[2]), true);
    }
    if (words.size() == 2 && words[0] == "kickstart" && !labelOf(words[1]).empty()) {
        return kickstart(tool, domain, labelOf(words[1]), false);
    }
    if (words.size() == 3 && words[0] == "bootstrap" && words[1] == domainName()) {
        return bootstrap(tool, domain, words[2]);
    }
    if (words.size() == 2 && words[0] == "bootout" && !labelOf(words[1]).empty()) {
        return bootout(tool, domain, labelOf(words[1]));
    }
    if (words.size() == 2 && words[0] == "print" && !labelOf(words[1]).empty()) {
        return print(tool, domain, labelOf(words[1]));
    }
    if (words.size() == 2 && words[0] == "getenv") {
        return 0; // nothing is set, and that is no failure
    }
    return tool.fail(64, "the stand-in knows no such call");
}

} // namespace

int main(int argc, char** argv) {
    const Tool tool("launchctl", argc, argv);
    if (!tool.record()) {
        return 74;
    }
    if (tool.isToldToFail()) {
        return tool.fail(1, "told to fail");
    }
    const char* const directory = std::getenv("OSTREL_DEMO_LAUNCHD");
    if (directory == nullptr) {
        return tool.fail(78, "OSTREL_DEMO_LAUNCHD is not set");
    }
    LaunchDomain domain(directory);
    return perform(tool, domain);
}
