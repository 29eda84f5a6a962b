#include "MenubarApp/Platform/ZoneDatabase.h"

#include "MenubarApp/Platform/PosixFileManager.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace menubar {

namespace {

/// What else lies there: two more copies of everything, and names for whatever the machine is set to.
bool isNoZone(std::string_view name) {
    return name.starts_with("posix/") || name.starts_with("right/") || name == "localtime" || name == "posixrules";
}

/// Compares with the entries themselves: a volume that does not tell upper from lower case would find any spelling.
bool hasEntry(const std::filesystem::path& directory, std::string_view name) {
    std::error_code error;
    std::filesystem::directory_iterator entry(directory, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        if (entry->path().filename().native() == name) {
            return true;
        }
    }
    return false;
}

} // namespace

std::string ZoneDatabase::directory() {
    const char* variable = std::getenv("TZDIR"); // NOLINT(concurrency-mt-unsafe): see the header
    return variable != nullptr && *variable != '\0' ? variable : "/usr/share/zoneinfo";
}

bool ZoneDatabase::holds(std::string_view name) {
    if (isNoZone(name)) {
        return false;
    }
    // No entry is called "", "." or "..", so that a name leads nowhere else.
    std::filesystem::path place = directory();
    for (std::size_t start = 0; start <= name.size();) {
        const std::size_t end = std::min(name.find('/', start), name.size());
        const std::string_view part = name.substr(start, end - start);
        if (!hasEntry(place, part)) {
            return false;
        }
        place /= part;
        start = end + 1;
    }
    const auto bytes = PosixFileManager().contents(place.native());
    return bytes && bytes->starts_with("TZif");
}

} // namespace menubar
