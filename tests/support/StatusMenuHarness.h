#pragma once

#include "MenubarApp/StatusMenu/StatusMenuController.h"

#include "tests/support/RecordingShell.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace menubar::recording {

/// A status menu on a desktop of recording fakes: home "/home/ann", status file "/home/ann/status.json", the clock at
/// 2025-03-04 14:03:00 UTC. Set the scene, then `start()`.
struct StatusMenuHarness {
    static constexpr const char* home = "/home/ann";
    static constexpr const char* statusPath = "/home/ann/status.json";
    static constexpr const char* logsDirectory = "/home/ann/Library/Logs/ostrel";
    static constexpr const char* plistPath = "/home/ann/Library/LaunchAgents/dev.ostrel.daemon.plist";

    Environment environment;
    FakeMainLoop mainLoop;
    FakeStatusItem item;
    FakeWorkspace workspace;
    FakeDefaults defaults;
    FakeFileManager files;
    FakeClock clock;
    FakeCommands commands;
    FakeSettingsWindow settings;
    std::vector<std::string> log;
    std::shared_ptr<StatusMenuController> controller;

    StatusMenuHarness() { clock.time = Date(std::chrono::seconds(1741096980)); }

    void writeStatus(std::string json) { files.files[statusPath] = std::move(json); }

    /// A daemon that polled three seconds ago, with the given elements of its list of sessions.
    void writeRunningStatus(const std::string& sessions = "") {
        writeStatus(R"({"at":"2025-03-04T14:02:57Z","sessions":[)" + sessions + "]}");
    }

    void start() {
        controller = StatusMenuController::create(statusPath, environment, home,
                                                  {.mainLoop = mainLoop,
                                                   .statusItem = item,
                                                   .workspace = workspace,
                                                   .defaults = defaults,
                                                   .fileManager = files,
                                                   .clock = clock,
                                                   .commands = commands,
                                                   .settings = settings,
                                                   .log = [this](std::string_view line) { log.emplace_back(line); }});
        controller->start();
    }

    /// Three seconds pass.
    void tick() {
        clock.time += StatusMenuController::pollInterval;
        mainLoop.tick();
    }

    /// What somebody finds who looks at the menu.
    const Menu& menu() {
        controller->menuNeedsUpdate();
        return item.menu;
    }

    /// The first item whose title begins so; null when none does.
    const MenuItem* itemTitled(std::string_view beginning) {
        const auto found =
            std::ranges::find_if(menu(), [&](const MenuItem& one) { return one.title.starts_with(beginning); });
        return found == item.menu.end() ? nullptr : &*found;
    }

    /// A person chooses the first enabled item whose title begins so. False when there is none.
    bool choose(std::string_view beginning) {
        const MenuItem* found = itemTitled(beginning);
        if (found == nullptr || !found->enabled) {
            return false;
        }
        const MenuItem chosen = *found;
        controller->perform(chosen.action, chosen.tag, chosen.path);
        return true;
    }
};

} // namespace menubar::recording
