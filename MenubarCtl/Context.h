#pragma once

#include "MenubarApp/Commands/SystemTools.h"
#include "MenubarApp/Platform/Clock.h"
#include "MenubarApp/Platform/PosixFileManager.h"
#include "MenubarApp/Platform/SystemClock.h"
#include "MenubarApp/StatusMenu/StatusPoll.h"
#include "MenubarCtl/CommandLine.h"
#include "MenubarCtl/Look.h"

#include <optional>

namespace menubar::ctl {

/// The system's clock, but for the time that the command line fixes.
class CtlClock final : public Clock {
public:
    explicit CtlClock(std::optional<Date> now) : m_now(now) {}

    [[nodiscard]] Date now() const override { return m_now ? *m_now : m_system.now(); }

    [[nodiscard]] TimeZone timeZone() const override { return m_system.timeZone(); }

private:
    SystemClock m_system;
    std::optional<Date> m_now;
};

/// One look at the status file and what follows from it.
struct Observation {
    StatusPoll poll;
    StatusMenu menu;
    Date now;
    TimeZone timeZone;
};

/// What a command works with. Main thread.
class Context {
public:
    Context(CommandLine line, Environment environment, const SystemTools& tools = {});

    [[nodiscard]] const CommandLine& line() const { return m_line; }

    [[nodiscard]] const Environment& environment() const { return m_commands.environment; }

    /// For outside programs. Each run is a diagnostic line, which only --verbose shows.
    [[nodiscard]] const CommandContext& commands() const { return m_commands; }

    [[nodiscard]] const StatusPaths& paths() const { return m_paths; }

    [[nodiscard]] const Clock& clock() const { return m_clock; }

    /// How text on standard output is written.
    [[nodiscard]] TextStyle outputStyle() const;

    /// Reads the status file. Never waits for a FIFO or a device.
    [[nodiscard]] Observation observe() const;

private:
    CommandLine m_line;
    CommandContext m_commands;
    StatusPaths m_paths;
    PosixFileManager m_files;
    CtlClock m_clock;
};

} // namespace menubar::ctl
