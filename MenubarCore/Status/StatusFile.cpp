#include "MenubarCore/Status/StatusFile.h"

namespace menubar {

int rank(SessionLevel level) {
    switch (level) {
    case SessionLevel::ok: return 0;
    case SessionLevel::unknown: return 1;
    case SessionLevel::warn: return 2;
    case SessionLevel::critical: return 3;
    }
    return 1;
}

std::string_view label(SessionLifecycle lifecycle) {
    return lifecycle == SessionLifecycle::needsInput ? "needs input" : rawText(lifecycle);
}

std::string_view SessionStatus::displayName() const& {
    for (const std::optional<std::string>* name : {&dirName, &shortId}) {
        if (*name && !(*name)->empty()) {
            return **name;
        }
    }
    return "session";
}

const JSONValue* OstrelConfig::setting(std::string_view key) const& {
    if (!settings) {
        return nullptr;
    }
    const auto found = settings->find(key);
    return found == settings->end() ? nullptr : &found->second;
}

bool StatusFile::configChangedSinceLoad() const {
    return configFile && configFile->changedSinceLoad.value_or(false);
}

std::set<std::string> StatusFile::flagLockedSettings() const {
    std::set<std::string> locked;
    if (configSources) {
        for (const auto& [key, source] : *configSources) {
            if (source == ConfigSource::cli) {
                locked.insert(key);
            }
        }
    }
    return locked;
}

} // namespace menubar
