#include "demo/DemoConfig.h"

#include "MenubarCore/Settings/SettingsSchema.h"

#include "demo/ConfigSchema.h"
#include "demo/Timestamp.h"

#include <array>
#include <charconv>
#include <system_error>
#include <utility>

namespace menubar::demo {

namespace {

/// Milliseconds of "30s", "10m", "1h", "500ms"; null for every other text.
JSONValue milliseconds(std::string_view text) {
    constexpr std::array<std::pair<std::string_view, double>, 4> units{
        {{"ms", 1}, {"s", 1000}, {"m", 60'000}, {"h", 3'600'000}}};
    std::uint32_t count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    const std::string_view unit = text.substr(static_cast<std::size_t>(end - text.data()));
    for (const auto& [name, factor] : units) {
        if (error == std::errc() && unit == name) {
            return count * factor;
        }
    }
    return nullptr;
}

JSONValue effectiveValue(const SettingSpec& spec, const JSONValue& value) {
    const std::string* text = value.stringValue();
    const bool isDuration = spec.control.kind() == SettingControl::Kind::duration;
    return isDuration && text != nullptr ? milliseconds(*text) : value;
}

} // namespace

DemoConfig::DemoConfig(const JSONValue::Object& file, const JSONValue::Object& flags) {
    for (const SettingSpec& spec : configSchema().settings()) {
        const auto flag = flags.find(spec.name);
        const auto inFile = file.find(spec.name);
        if (flag != flags.end()) {
            m_settings[spec.name] = effectiveValue(spec, flag->second);
            m_sources[spec.name] = ConfigSource::cli;
        } else if (inFile != file.end()) {
            m_settings[spec.name] = effectiveValue(spec, inFile->second);
            m_sources[spec.name] = ConfigSource::file;
        } else {
            m_settings[spec.name] = effectiveValue(spec, spec.defaultValue.value_or(JSONValue()));
            m_sources[spec.name] = ConfigSource::default_;
        }
    }
}

double DemoConfig::number(std::string_view name) const {
    const auto found = m_settings.find(name);
    return found == m_settings.end() ? 0 : found->second.numberValue().value_or(0);
}

JSONValue DemoConfig::effective() const {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 8> named{{
        {"warnContextPct", "warn-context"},
        {"criticalContextPct", "critical-context"},
        {"cacheMinContextPct", "cache-min-context"},
        {"cacheLeadMs", "cache-warn-before"},
        {"messageAgents", "message-agents"},
        {"dryRun", "dry-run"},
        {"onCritical", "on-critical"},
        {"onCacheExpiry", "on-cache-expiry"},
    }};
    JSONValue::Object config{{"settings", m_settings}};
    for (const auto& [field, setting] : named) {
        config[std::string(field)] = m_settings.at(std::string(setting));
    }
    return config;
}

JSONValue DemoConfig::sourceTexts() const {
    JSONValue::Object texts;
    for (const auto& [name, source] : m_sources) {
        texts[name] = rawText(source);
    }
    return texts;
}

std::optional<FileStamp> FileStamp::of(const std::string& path) {
    std::error_code error;
    FileStamp stamp;
    stamp.modified = std::filesystem::last_write_time(path, error);
    if (error) {
        return std::nullopt;
    }
    stamp.size = std::filesystem::file_size(path, error);
    return error ? std::nullopt : std::optional(stamp);
}

JSONValue configFileStatus(const std::string& path, Date startedAt, const std::optional<FileStamp>& atStart,
                           const std::optional<FileStamp>& now) {
    return JSONValue::Object{
        {"path", path},
        {"loadedAt", atStart ? JSONValue(timestampText(startedAt)) : JSONValue()},
        {"changedSinceLoad", atStart != now},
    };
}

} // namespace menubar::demo
