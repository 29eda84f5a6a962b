#pragma once

#include "MenubarCore/Menu/StatusMenu.h"

#include "Records.h"
#include "tests/support/MenuDump.h"

#include <set>
#include <string>
#include <utility>

namespace menubar {

/// Everything that a menu is made from, to begin with a daemon that polled three seconds ago and has nothing to tell,
/// on a machine where everything is in its place.
struct StatusMenuScene {
    StatusSnapshot snapshot = StatusSnapshot::loaded(records::polled(3));
    CompactSetting compact;
    HiddenItemTracker hiddenTracker;
    std::set<std::string> existingHandoffs;
    bool isDaemonInstalled = true;
    bool logsDirectoryExists = true;
    bool statusFileExists = true;
    TimeZone timeZone;

    StatusMenuScene() = default;

    explicit StatusMenuScene(StatusFile file) : snapshot(StatusSnapshot::loaded(std::move(file))) {}

    explicit StatusMenuScene(StatusSnapshot of) : snapshot(std::move(of)) {}

    [[nodiscard]] StatusMenu make() const {
        const DaemonState state = DaemonState::from(snapshot, records::now);
        return StatusMenu::make({
            .snapshot = snapshot,
            .state = state,
            .compact = compact,
            .hiddenTracker = hiddenTracker,
            .handoffExists = [this](const std::string& path) { return existingHandoffs.contains(path); },
            .isDaemonInstalled = isDaemonInstalled,
            .logsDirectoryExists = logsDirectoryExists,
            .statusFileExists = statusFileExists,
            .now = records::now,
            .timeZone = timeZone,
        });
    }

    [[nodiscard]] std::string dump() const { return menubar::dump(make().items); }
};

} // namespace menubar
