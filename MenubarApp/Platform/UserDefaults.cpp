#include "MenubarApp/Platform/UserDefaults.h"

namespace menubar {

std::string UserDefaults::domain(const Environment& environment) {
    const auto found = environment.find(domainKey);
    return found == environment.end() || found->second.empty() ? "ostrel-menubar" : found->second;
}

} // namespace menubar
