#include "MenubarCtl/ThisSystem.h"

#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarApp/Platform/UserDefaults.h"
#include "MenubarCtl/Terminal.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <system_error>

#include <plist/plist.h>
#include <unistd.h>

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

/// The whole file. Absent when it holds no dictionary that can be read; a file that is not there is an empty one.
std::optional<Owned> preferences(const std::string& path, const FileManager& files) {
    if (!files.exists(path)) {
        return Owned(plist_new_dict());
    }
    const auto bytes = files.contents(path);
    if (!bytes || bytes->size() > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    plist_t root = nullptr;
    plist_from_memory(bytes->data(), static_cast<std::uint32_t>(bytes->size()), &root);
    Owned owner(root);
    if (root == nullptr || plist_get_node_type(root) != PLIST_DICT) {
        return std::nullopt;
    }
    return owner;
}

/// Puts the bytes in place at once, so that the app never reads half of them. The system's error, or none.
std::error_code replaceFile(const std::string& path, std::string_view bytes) {
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
    if (error) {
        return error;
    }
    std::string pattern = path + ".XXXXXX";
    const int file = ::mkstemp(pattern.data());
    if (file < 0) {
        return {errno, std::generic_category()};
    }
    const auto written = writeAll(file, bytes);
    ::close(file);
    if (!written || ::rename(pattern.c_str(), path.c_str()) != 0) {
        error = {written ? errno : written.error(), std::generic_category()};
        ::unlink(pattern.c_str());
    }
    return error;
}

} // namespace

bool canFindApps() {
    return false; // here the app is a program like any other, in no bundle
}

std::vector<RunningApp> runningApps() {
    return {};
}

std::expected<std::unique_ptr<LoginItem>, LoginItemError> systemLoginItem(std::optional<std::chrono::milliseconds>) {
    return std::unexpected(LoginItemError{"only macOS can start the app at login"});
}

std::string programPath() {
    std::error_code error;
    const auto path = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : path.string();
}

std::optional<bool> storedBool(std::string_view key, const Environment& environment, const FileManager& files) {
    const auto root = preferences(defaultsFile(environment), files);
    plist_t value = root ? plist_dict_get_item(root->get(), std::string(key).c_str()) : nullptr;
    if (value == nullptr || plist_get_node_type(value) != PLIST_BOOLEAN) {
        return std::nullopt;
    }
    std::uint8_t isTrue = 0;
    plist_get_bool_val(value, &isTrue);
    return isTrue != 0;
}

std::expected<void, std::string> storeBool(std::string_view key, bool value, const Environment& environment,
                                           const FileManager& files) {
    const std::string path = defaultsFile(environment);
    const auto root = preferences(path, files);
    if (!root) {
        return std::unexpected("the preferences in " + path + " cannot be read");
    }
    plist_dict_set_item(root->get(), std::string(key).c_str(), plist_new_bool(value ? 1 : 0));
    char* xml = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(root->get(), &xml, &length);
    const std::string bytes(xml == nullptr ? "" : xml, length);
    std::free(xml); // NOLINT(cppcoreguidelines-no-malloc): the library allocated it so
    if (bytes.empty()) {
        return std::unexpected("the preferences cannot be written as a property list");
    }
    if (const std::error_code error = replaceFile(path, bytes)) {
        return std::unexpected("cannot write " + path + ": " + error.message());
    }
    return {};
}

} // namespace menubar::ctl
