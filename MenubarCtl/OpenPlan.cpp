#include "MenubarCtl/OpenPlan.h"

#include "MenubarCore/Daemon/ExecutableLocator.h"

#include <algorithm>

namespace menubar::ctl {

namespace {

/// The words of a variable such as PAGER: a program and its options, parted by blanks.
std::vector<std::string> wordsOf(std::string_view text) {
    std::vector<std::string> words;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        if (end > 0) {
            words.emplace_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return words;
}

} // namespace

OpenPlan openPlan(const std::string& path, bool isFolder, const Environment& environment,
                  const std::function<bool(const std::string&)>& isExecutable) {
    const std::string file = path.starts_with('/') ? path : "./" + path;
    const auto found = [&](std::string_view name) {
        return ExecutableLocator::resolve(name, {}, variable(environment, "PATH"), isExecutable);
    };
    OpenPlan plan;
    if (auto pager = wordsOf(variable(environment, "PAGER")); !isFolder && !pager.empty()) {
        plan = {.words = std::move(pager), .takesTerminal = true};
    } else if (isExecutable("/usr/bin/open") && variable(environment, "SSH_CONNECTION").empty()) {
        plan.words = {"/usr/bin/open"};
    } else if (const auto opener = found("xdg-open"); opener && (!variable(environment, "DISPLAY").empty() ||
                                                                 !variable(environment, "WAYLAND_DISPLAY").empty())) {
        plan.words = {*opener};
    } else if (const auto less = found("less"); less && !isFolder) {
        plan = {.words = {*less}, .takesTerminal = true};
    }
    if (!plan.words.empty()) {
        plan.words.push_back(file);
    }
    return plan;
}

} // namespace menubar::ctl
