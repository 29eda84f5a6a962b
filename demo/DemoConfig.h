#pragma once

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Status/StatusFile.h"
#include "MenubarCore/Text/Date.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace menubar::demo {

/// The configuration that the stand-in runs with: for each setting of the schema a command-line flag's value, else the
/// config file's, else the default. A value.
class DemoConfig {
public:
    /// All defaults.
    DemoConfig() : DemoConfig({}, {}) {}

    /// Both by setting; the file's values fit the schema.
    DemoConfig(const JSONValue::Object& file, const JSONValue::Object& flags);

    /// Every setting by key: durations in milliseconds, null where there is no value.
    [[nodiscard]] const JSONValue::Object& settings() const& { return m_settings; }

    const JSONValue::Object& settings() && = delete;

    /// Who decided each setting.
    [[nodiscard]] const std::map<std::string, ConfigSource>& sources() const& { return m_sources; }

    const std::map<std::string, ConfigSource>& sources() && = delete;

    /// The number that a setting holds (percent, milliseconds); 0 where it holds none.
    [[nodiscard]] double number(std::string_view name) const;

    /// The status file's `config`: the fields that it names, and under `settings` every setting.
    [[nodiscard]] JSONValue effective() const;

    /// The status file's `configSources`.
    [[nodiscard]] JSONValue sourceTexts() const;

private:
    JSONValue::Object m_settings;
    std::map<std::string, ConfigSource> m_sources;
};

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
