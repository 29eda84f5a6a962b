#include "demo/DemoConfig.h"

#include "demo/Timestamp.h"

#include <system_error>

namespace menubar::demo {

JSONValue DemoConfig::effective() {
    const JSONValue::Array onCritical{"notify", "handoff"};
    const JSONValue::Array onCacheExpiry{"notify"};
    JSONValue::Object settings{
        {"warnContextPct", warnContextPct},
        {"criticalContextPct", criticalContextPct},
        {"cacheMinContextPct", 30},
        {"cacheLeadMs", 60000},
        {"intervalMs", 1000},
        {"messageAgents", true},
        {"dryRun", false},
        {"onCritical", onCritical},
        {"onCacheExpiry", onCacheExpiry},
        {"handoffLocation", "scratchpad"},
        {"ignoredDirectories", JSONValue::Array{}},
        {"quietHours", nullptr},
    };
    return JSONValue::Object{
        {"warnContextPct", warnContextPct},
        {"criticalContextPct", criticalContextPct},
        {"cacheMinContextPct", 30},
        {"cacheLeadMs", 60000},
        {"messageAgents", true},
        {"dryRun", false},
        {"onCritical", onCritical},
        {"onCacheExpiry", onCacheExpiry},
        {"settings", std::move(settings)},
    };
}

JSONValue DemoConfig::sources() {
    return JSONValue::Object{
        {"warnContextPct", "file"},     {"criticalContextPct", "default"},
        {"cacheMinContextPct", "file"}, {"cacheLeadMs", "default"},
        {"intervalMs", "cli"},          {"messageAgents", "file"},
        {"dryRun", "default"},          {"onCritical", "default"},
        {"onCacheExpiry", "default"},   {"handoffLocation", "default"},
        {"quietHours", "default"},      {"ignoredDirectories", "default"},
    };
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
