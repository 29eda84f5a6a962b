#include "MenubarApp/Platform/SystemClock.h"

#include "MenubarApp/Platform/PosixFileManager.h"
#include "MenubarApp/Platform/ZoneDatabase.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <string_view>

#include <sys/stat.h>
#include <unicode/ucal.h>

namespace menubar {

namespace {

/// Changes whenever the system's zone may have: the variable's value and the identity of the file it falls back to.
std::string zoneKey() {
    if (const char* variable = std::getenv("TZ"); variable != nullptr) { // NOLINT(concurrency-mt-unsafe): never set
        return std::string("TZ=") + variable;
    }
    struct stat info{};
    if (::lstat("/etc/localtime", &info) != 0) {
        return "";
    }
    return std::to_string(info.st_ino) + ":" + std::to_string(info.st_mtime);
}

TimeZone hostZone() {
    std::array<UChar, 256> name{};
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = ucal_getHostTimeZone(name.data(), static_cast<int32_t>(name.size()), &status);
    if (U_FAILURE(status) != 0) {
        return {};
    }
    std::string text; // zone names are ASCII
    for (int32_t i = 0; i < length && static_cast<std::size_t>(i) < name.size(); ++i) {
        text += static_cast<char>(name.at(static_cast<std::size_t>(i)));
    }
    return ZoneDatabase::zone(text, PosixFileManager()).value_or(TimeZone());
}

} // namespace

Date SystemClock::now() const {
    return std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
}

TimeZone SystemClock::timeZone() const {
    std::string key = zoneKey();
    if (!m_zone || key != m_zoneKey) {
        m_zone = hostZone();
        m_zoneKey = std::move(key);
    }
    return *m_zone;
}

} // namespace menubar
