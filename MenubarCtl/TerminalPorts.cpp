#include "MenubarCtl/TerminalPorts.h"

#include "MenubarCore/Daemon/ExecutableLocator.h"
#include "MenubarCtl/StoredDefaults.h"

#include <array>

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

std::optional<bool> TerminalDefaults::boolValue(std::string_view key) const {
    return storedBool(key, m_environment, m_files);
}

void TerminalDefaults::setBool(std::string_view key, bool value) {
    if (const auto stored = storeBool(key, value, m_environment, m_files); !stored) {
        m_failed(stored.error());
    }
}

OpenPlan openPlan(const std::string& path, bool isFolder, const Environment& environment,
                  const std::function<bool(const std::string&)>& isExecutable) {
    const std::string file = path.starts_with('/') ? path : "./" + path;
    const auto found = [&](std::string_view name) {
        constexpr std::array<std::string_view, 1> none{};
        return ExecutableLocator::resolve(name, std::span(none).first(0), variable(environment, "PATH"), isExecutable);
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
