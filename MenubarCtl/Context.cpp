#include "MenubarCtl/Context.h"

#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarCore/Menu/HiddenItemTracker.h"
#include "MenubarCore/Status/StatusFileLocator.h"
#include "MenubarCtl/ThisSystem.h"

#include <utility>

#include <unistd.h>

namespace menubar::ctl {

namespace {

/// --status-file stands for the variable, so that both are read by one rule.
std::string statusFilePath(const CommandLine& line, Environment environment, const std::string& home) {
    if (line.statusFile) {
        environment[std::string(StatusFileLocator::environmentKey)] = *line.statusFile;
    }
    return StatusFileLocator::path(environment, home);
}

} // namespace

Context::Context(CommandLine line, Environment environment, const SystemTools& tools)
    : m_line(std::move(line)), m_commands{.environment = std::move(environment), .uid = ::getuid(), .tools = tools},
      m_clock(m_line.now) {
    m_commands.home = homeDirectory(m_commands.environment);
    if (!m_line.verbose) {
        m_commands.log = [](std::string_view) {};
    }
    m_paths = StatusPaths::under(m_commands.home, statusFilePath(m_line, m_commands.environment, m_commands.home));
}

TextStyle Context::outputStyle() const {
    const bool isTerminal = ctl::isTerminal(STDOUT_FILENO);
    return {.columns = terminalSize(STDOUT_FILENO).columns,
            .styling = stylingFor(isTerminal, m_commands.environment, m_line.color),
            .cuts = isTerminal};
}

Observation Context::observe() const {
    const Date now = m_clock.now();
    TimeZone timeZone = m_clock.timeZone();
    const auto stored = storedBool(CompactSetting::defaultsKey, m_commands.environment, m_files);
    StatusPoll poll = StatusPoll::read(m_paths.statusFile, m_commands.environment, stored, m_files, now, timeZone);
    // A terminal has no item that could be hidden.
    StatusMenu menu = poll.menu(m_paths, HiddenItemTracker{}, m_files, now, timeZone);
    return {.poll = std::move(poll), .menu = std::move(menu), .now = now, .timeZone = std::move(timeZone)};
}

} // namespace menubar::ctl
