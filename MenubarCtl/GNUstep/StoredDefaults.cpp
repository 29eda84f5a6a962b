#include "MenubarCtl/StoredDefaults.h"

#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarApp/Platform/UserDefaults.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <string>

#include <plist/plist.h>

namespace menubar::ctl {

namespace {

struct Free {
    void operator()(void* node) const { plist_free(node); }
};

using Owned = std::unique_ptr<void, Free>;

/// Where the desktop app keeps its preferences: GNUstep's usual folder, below HOME.
std::string defaultsFile(const Environment& environment) {
    return homeDirectory(environment) + "/GNUstep/Defaults/" + UserDefaults::domain(environment) + ".plist";
}

} // namespace

std::optional<bool> storedBool(std::string_view key, const Environment& environment, const FileManager& files) {
    const auto bytes = files.contents(defaultsFile(environment));
    if (!bytes || bytes->size() > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    plist_t root = nullptr;
    plist_from_memory(bytes->data(), static_cast<std::uint32_t>(bytes->size()), &root);
    const Owned owner(root);
    if (root == nullptr || plist_get_node_type(root) != PLIST_DICT) {
        return std::nullopt;
    }
    plist_t value = plist_dict_get_item(root, std::string(key).c_str());
    if (value == nullptr || plist_get_node_type(value) != PLIST_BOOLEAN) {
        return std::nullopt;
    }
    std::uint8_t isTrue = 0;
    plist_get_bool_val(value, &isTrue);
    return isTrue != 0;
}

} // namespace menubar::ctl
