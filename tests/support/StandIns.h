#pragma once

#include "MenubarApp/Commands/SystemTools.h"
#include "MenubarCore/Daemon/LaunchAgentLabel.h"

#include "tests/support/Programs.h"
#include "tests/support/RecordedCalls.h"
#include "tests/support/RecordingShell.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryDirectory.h"

#include <filesystem>
#include <string>
#include <vector>

#include <unistd.h>

namespace menubar::testing_support {

/// A scratch home and the stand-ins, which record every call that they get.
struct StandIns {
    TemporaryDirectory home;
    ScopedVariable record{"OSTREL_DEMO_RECORD", home / "record"};
    ScopedVariable domain{"OSTREL_DEMO_LAUNCHD", home / "launchd"};
    recording::FakeMainLoop mainLoop;
    std::vector<std::string> lines;
    CommandContext context{
        .environment = {{"PATH", standInFolder}},
        .home = home.path(),
        .uid = ::getuid(),
        .tools = {.launchctl = standInFolder + "/launchctl", .osascript = standInFolder + "/osascript", .cmux = {}},
        .log = [this](std::string_view line) { lines.emplace_back(line); }};

    [[nodiscard]] std::vector<std::string> calls() const { return recordedCalls(home / "record"); }
};

} // namespace menubar::testing_support
