#include "MenubarCore/Daemon/ExecutableLocator.h"

#include <algorithm>

namespace menubar {

std::optional<std::string> ExecutableLocator::resolve(std::string_view name,
                                                      std::span<const std::string_view> candidates,
                                                      std::optional<std::string_view> path, const Exists& exists) {
    for (const std::string_view candidate : candidates) {
        if (std::string full(candidate); exists(full)) {
            return full;
        }
    }
    std::string_view rest = path.value_or("");
    while (!rest.empty()) {
        const std::string_view directory = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(directory.size() + 1, rest.size()));
        if (directory.empty()) {
            continue;
        }
        std::string full(directory);
        full += '/';
        full += name;
        if (exists(full)) {
            return full;
        }
    }
    return std::nullopt;
}

} // namespace menubar
