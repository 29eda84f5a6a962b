#include "MenubarApp/Platform/ZoneDatabase.h"

#include <algorithm>
#include <array>
#include <string>

namespace menubar {

namespace {

/// What else lies in that folder: two more copies of everything, and names for whatever the machine is set to.
bool isZoneOfTheDatabase(std::string_view name) {
    static constexpr auto others = std::to_array<std::string_view>({"localtime", "posixrules"});
    return TimeZone::isWellFormedName(name) && !name.starts_with("posix/") && !name.starts_with("right/") &&
           std::ranges::find(others, name) == others.end();
}

} // namespace

std::optional<TimeZone> ZoneDatabase::zone(std::string_view name, const FileManager& files) {
    if (!isZoneOfTheDatabase(name)) {
        return std::nullopt;
    }
    if (const auto bytes = files.contents(std::string(root).append(name))) {
        if (std::optional<TimeZone> zone = TimeZone::fromZoneFile(std::string(name), *bytes)) {
            return zone;
        }
    }
    return TimeZone::named(name);
}

} // namespace menubar
