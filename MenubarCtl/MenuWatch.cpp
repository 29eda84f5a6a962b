#include "MenubarApp/Platform/SignalPipe.h"
#include "MenubarApp/StatusMenu/StatusMenuController.h"
#include "MenubarCtl/Commands.h"
#include "MenubarCtl/Screen.h"
#include "MenubarCtl/Terminal.h"
#include "MenubarCtl/TextOutput.h"
#include "MenubarCtl/WatchWait.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <expected>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <unistd.h>

namespace menubar::ctl {

namespace {

using Steady = std::chrono::steady_clock;

/// The display follows the file as fast as the menu bar does.
constexpr auto interval = StatusMenuController::pollInterval;

/// What ended a wait.
enum class Wake { elapsed, resized, suspended, quit };

class MenuWatch {
public:
    MenuWatch(const Context& context, SignalPipe& signals)
        : m_context(context), m_signals(signals), m_isScreen(isTerminal(STDOUT_FILENO)),
          m_styling(stylingFor(m_isScreen, context.environment())) {
        // A dumb terminal is written to line by line, like a file.
        m_isScreen = m_isScreen && m_styling != Styling::plain;
    }

    /// Until interrupted. The error is the system's number for a failed write.
    std::expected<void, int> run();

private:
    std::expected<void, int> draw(const Observation& observation);
    Wake waitUntil(Steady::time_point deadline);
    std::optional<Wake> handleSignals();
    std::expected<void, int> suspend();

    const Context& m_context;
    SignalPipe& m_signals;
    bool m_isScreen;
    Styling m_styling;
    Screen m_screen{STDOUT_FILENO, STDIN_FILENO};
    WatchWait m_wait;
    bool m_isFirstFrame = true;
};

std::expected<void, int> MenuWatch::run() {
    if (m_isScreen) {
        if (auto entered = m_screen.enter(); !entered) {
            return entered;
        }
    }
    for (;;) {
        const auto deadline = Steady::now() + interval;
        const Observation observation = m_context.observe();
        Wake wake = Wake::resized;
        // A new window size shows the same observation again.
        while (wake == Wake::resized || wake == Wake::suspended) {
            if (auto drawn = draw(observation); !drawn) {
                return drawn;
            }
            wake = waitUntil(deadline);
            if (wake == Wake::suspended) {
                if (auto resumed = suspend(); !resumed) {
                    return resumed;
                }
            }
        }
        if (wake == Wake::quit) {
            return {};
        }
    }
}

std::expected<void, int> MenuWatch::draw(const Observation& observation) {
    const TerminalSize size = terminalSize(STDOUT_FILENO);
    auto lines =
        menuLines(observation.poll.presentation, observation.menu, {.columns = size.columns, .styling = m_styling});
    if (m_isScreen) {
        return m_screen.draw(clippedToRows(std::move(lines), size, m_styling));
    }
    std::string frame = m_isFirstFrame ? "" : "\n";
    m_isFirstFrame = false;
    for (const std::string& line : lines) {
        frame += line + "\n";
    }
    return writeAll(STDOUT_FILENO, frame);
}

Wake MenuWatch::waitUntil(Steady::time_point deadline) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Steady::now());
        if (left.count() <= 0) {
            return Wake::elapsed;
        }
        const auto outcome = m_wait.wait({.signals = m_signals.descriptor(),
                                          .keys = m_screen.readsKeys() ? STDIN_FILENO : -1,
                                          .output = STDOUT_FILENO},
                                         left);
        if (outcome.isReaderGone) {
            return Wake::quit;
        }
        if (outcome.hasKey) {
            char key = 0;
            const ssize_t count = ::read(STDIN_FILENO, &key, 1);
            if (count == 0 || (count == 1 && key == 'q')) {
                return Wake::quit; // the terminal has gone, or the person says so
            }
        }
        if (outcome.isSignalled) {
            if (const auto wake = handleSignals()) {
                return *wake;
            }
        }
    }
}

/// The most urgent of the signals that have come.
std::optional<Wake> MenuWatch::handleSignals() {
    std::optional<Wake> wake;
    while (const auto signal = m_signals.next()) {
        const Wake asked = *signal == SIGWINCH ? Wake::resized : *signal == SIGTSTP ? Wake::suspended : Wake::quit;
        wake = std::max(wake.value_or(asked), asked);
    }
    return wake;
}

/// Gives the terminal back for as long as the job is stopped.
std::expected<void, int> MenuWatch::suspend() {
    if (m_isScreen) {
        m_screen.leave();
    }
    ::raise(SIGSTOP);
    return m_isScreen ? m_screen.enter() : std::expected<void, int>();
}

} // namespace

ExitStatus runMenuWatch(const Context& context) {
    std::vector signals{SIGINT, SIGQUIT, SIGTERM, SIGWINCH, SIGTSTP};
    struct sigaction hangup{};
    if (::sigaction(SIGHUP, nullptr, &hangup) == 0 && hangup.sa_handler != SIG_IGN) {
        signals.push_back(SIGHUP); // unless nohup(1) said to live on without the terminal
    }
    auto pipe = SignalPipe::create(signals);
    if (!pipe) {
        complain("cannot create a pipe");
        return ExitStatus::failed;
    }
    const auto outcome = MenuWatch(context, *pipe).run();
    if (outcome || outcome.error() == EPIPE) {
        return ExitStatus::done;
    }
    complain("cannot write the output: " + std::generic_category().message(outcome.error()));
    return ExitStatus::failed;
}

} // namespace menubar::ctl
