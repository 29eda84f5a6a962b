#pragma once

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Text/Date.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace menubar::demo {

/// The configuration that the stand-in claims to run with. It reads no config file; it only notices when the one at
/// the usual place changes, so that "restart needed" can be seen.
namespace DemoConfig {

inline constexpr double warnContextPct = 70;
inline constexpr double criticalContextPct = 90;

/// The status file's `config`: the named fields and, under `settings`, every setting by key.
[[nodiscard]] JSONValue effective();

/// The status file's `configSources`: who decided each setting.
[[nodiscard]] JSONValue sources();

} // namespace DemoConfig

/// What a file looked like at one time. Two that differ mean that the file was written in between.
struct FileStamp {
    std::filesystem::file_time_type modified;
    std::uintmax_t size = 0; ///< bytes

    /// Absent when there is no such file.
    [[nodiscard]] static std::optional<FileStamp> of(const std::string& path);

    bool operator==(const FileStamp&) const = default;
};

/// The status file's `configFile`, judged from the file's stamp at the start and now. `loadedAt` is null when there
/// was no file to load.
[[nodiscard]] JSONValue configFileStatus(const std::string& path, Date startedAt,
                                         const std::optional<FileStamp>& atStart, const std::optional<FileStamp>& now);

} // namespace menubar::demo
