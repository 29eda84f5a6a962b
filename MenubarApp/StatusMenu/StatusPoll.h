#pragma once

#include "MenubarCore/Menu/CompactSetting.h"
#include "MenubarCore/Menu/DaemonState.h"
#include "MenubarCore/Menu/HiddenItemTracker.h"
#include "MenubarCore/Menu/StatusItemPresentation.h"
#include "MenubarCore/Menu/StatusMenu.h"
#include "MenubarCore/Status/StatusSnapshot.h"
#include "MenubarCore/System/Environment.h"
#include "MenubarCore/System/FileManager.h"

#include <optional>
#include <string>

namespace menubar {

/// Where the things are that a poll looks at. Fixed for the life of a process.
struct StatusPaths {
    std::string statusFile;
    std::string logsDirectory; ///< home + "/Library/Logs/ostrel"
    std::string launchAgentPlist;

    [[nodiscard]] static StatusPaths under(const std::string& home, std::string statusFile);
};

/// What one look at the status file gives, for the menu bar and for the terminal alike. A value.
struct StatusPoll {
    StatusSnapshot snapshot;
    DaemonState state;
    CompactSetting compact;
    StatusItemPresentation presentation;

    /// Reads the file and decides. `storedCompact` is the person's stored default. Blocks for the read.
    [[nodiscard]] static StatusPoll read(const std::string& statusFile, const Environment& environment,
                                         std::optional<bool> storedCompact, const FileManager& files, Date now,
                                         const TimeZone& timeZone);

    /// The menu that goes with it; asks `files` what exists.
    [[nodiscard]] StatusMenu menu(const StatusPaths& paths, const HiddenItemTracker& hiddenTracker,
                                  const FileManager& files, Date now, const TimeZone& timeZone) const;
};

} // namespace menubar
