#pragma once

#include "MenubarApp/StatusMenu/StatusPoll.h"
#include "MenubarCore/Text/Timestamp.h"

#include "tests/support/RecordingShell.h"

#include <string>
#include <utility>

namespace menubar::ctl {

/// One look at a status file that the test writes down, at a fixed time in UTC.
struct Scene {
    explicit Scene(std::string statusFile, Environment environment = {}) {
        files.files["/status.json"] = std::move(statusFile);
        files.files["/handoff 1.md"] = "";
        poll = StatusPoll::read("/status.json", environment, std::nullopt, files, now, TimeZone());
        menu = poll.menu(StatusPaths::under("/home", "/status.json"), {}, files, now, TimeZone());
    }

    Date now = parseTimestamp("2025-03-04T10:15:33Z").value();
    recording::FakeFileManager files;
    StatusPoll poll;
    StatusMenu menu;
};

/// A file of a daemon that polled three seconds before, with these sessions.
inline std::string running(const std::string& sessions) {
    return R"({"at":"2025-03-04T10:15:30Z","sessions":[)" + sessions + "]}";
}

} // namespace menubar::ctl
