#include "tests/e2e/ChildProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace menubar::e2e {

namespace {

using Steady = std::chrono::steady_clock;

/// Exit status of a child that could not become what it should run as.
constexpr int notStarted = 126;

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

struct Pipe {
    int readEnd;
    int writeEnd;
};

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        fail("pipe");
    }
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    return {.readEnd = ends[0], .writeEnd = ends[1]};
}

void setSize(int terminal, unsigned short columns, unsigned short rows) {
    winsize size{};
    size.ws_col = columns;
    size.ws_row = rows;
    ::ioctl(terminal, TIOCSWINSZ, &size);
}

int makeTerminal() {
    const int leader = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (leader < 0 || ::grantpt(leader) != 0 || ::unlockpt(leader) != 0) {
        fail("posix_openpt");
    }
    ::fcntl(leader, F_SETFD, FD_CLOEXEC);
    return leader;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

bool becomeUser(uid_t user) {
    return ::setgroups(0, nullptr) == 0 && ::setgid(user) == 0 && ::setuid(user) == 0;
}

} // namespace

ChildProcess::ChildProcess(const Options& options) {
    std::vector<std::string> arguments{options.program};
    arguments.insert(arguments.end(), options.arguments.begin(), options.arguments.end());
    std::vector<std::string> environment;
    for (const auto& [name, value] : options.environment) {
        environment.push_back(name + "=" + value);
    }
    const std::vector<char*> argumentPointers = pointers(arguments);
    const std::vector<char*> environmentPointers = pointers(environment);

    const Pipe errors = makePipe();
    m_errorDescriptor = errors.readEnd;
    Pipe output{-1, -1};
    std::string terminalName;
    if (options.output == Output::terminal) {
        m_outputDescriptor = makeTerminal();
        terminalName = ::ptsname(m_outputDescriptor);
    } else {
        output = makePipe();
        m_outputDescriptor = output.readEnd;
    }

    m_pid = ::fork();
    if (m_pid < 0) {
        fail("fork");
    }
    if (m_pid == 0) {
        // Only what is safe between fork and exec.
        int in = -1;
        int out = output.writeEnd;
        if (options.output == Output::terminal) {
            ::setsid();
            in = out = ::open(terminalName.c_str(), O_RDWR);
            ::ioctl(out, TIOCSCTTY, 0);
            setSize(out, options.columns, options.rows); // not before it is open: macOS would forget it
        } else {
            in = ::open("/dev/null", O_RDONLY);
        }
        ::dup2(in, STDIN_FILENO);
        ::dup2(out, STDOUT_FILENO);
        ::dup2(errors.writeEnd, STDERR_FILENO);
        if (in > STDERR_FILENO) {
            ::close(in);
        }
        std::signal(SIGPIPE, SIG_DFL);
        if (options.user && !becomeUser(*options.user)) {
            ::_exit(notStarted);
        }
        ::execve(options.program.c_str(), argumentPointers.data(), environmentPointers.data());
        ::_exit(notStarted);
    }
    ::close(errors.writeEnd);
    if (output.writeEnd >= 0) {
        ::close(output.writeEnd);
    }
    if (options.output == Output::closedPipe) {
        closeOutput();
    }
}

ChildProcess::~ChildProcess() {
    if (!m_status) {
        ::kill(m_pid, SIGKILL);
    }
    closeOutput(); // first: on macOS a process may not end before what it wrote to its terminal is read
    if (!m_status) {
        ::waitpid(m_pid, nullptr, 0);
    }
    if (m_errorDescriptor >= 0) {
        ::close(m_errorDescriptor);
    }
}

void ChildProcess::send(int signal) const {
    if (!m_status) {
        ::kill(m_pid, signal);
    }
}

void ChildProcess::type(std::string_view keys) const {
    if (::write(m_outputDescriptor, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
        fail("write");
    }
}

void ChildProcess::resizeTerminal(unsigned short columns, unsigned short rows) const {
    setSize(m_outputDescriptor, columns, rows);
}

void ChildProcess::closeOutput() {
    if (m_outputDescriptor >= 0) {
        ::close(m_outputDescriptor);
        m_outputDescriptor = -1;
    }
}

/// Reads what there is, waiting at most `timeout` for the first of it.
void ChildProcess::collect(std::chrono::milliseconds timeout) {
    std::array<pollfd, 2> descriptors{{{.fd = m_outputDescriptor, .events = POLLIN, .revents = 0},
                                       {.fd = m_errorDescriptor, .events = POLLIN, .revents = 0}}};
    if (::poll(descriptors.data(), descriptors.size(), static_cast<int>(timeout.count())) <= 0) {
        return;
    }
    const std::array<std::pair<int*, std::string*>, 2> sinks{
        {{&m_outputDescriptor, &m_output}, {&m_errorDescriptor, &m_errors}}};
    for (std::size_t i = 0; i < sinks.size(); ++i) {
        if (descriptors[i].revents == 0) {
            continue;
        }
        std::array<char, 65536> buffer{};
        const ssize_t count = ::read(*sinks[i].first, buffer.data(), buffer.size());
        if (count > 0) {
            sinks[i].second->append(buffer.data(), static_cast<std::size_t>(count));
        } else { // a terminal whose last user has gone fails, a pipe ends
            ::close(*sinks[i].first);
            *sinks[i].first = -1;
        }
    }
}

bool ChildProcess::reapIfEnded() {
    int status = 0;
    if (!m_status && ::waitpid(m_pid, &status, WNOHANG) == m_pid) {
        m_status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    return m_status.has_value();
}

bool ChildProcess::readUntil(const Condition& isEnough) {
    return collectUntil(m_output, m_outputDescriptor, isEnough);
}

bool ChildProcess::readErrorsUntil(const Condition& isEnough) {
    return collectUntil(m_errors, m_errorDescriptor, isEnough);
}

bool ChildProcess::collectUntil(const std::string& text, const int& descriptor, const Condition& isEnough) {
    const auto deadline = Steady::now() + patience;
    while (!isEnough(text)) {
        if (Steady::now() >= deadline || descriptor < 0) {
            return false;
        }
        collect(std::chrono::milliseconds(50));
    }
    return true;
}

bool ChildProcess::waitUntilStopped() {
    const auto deadline = Steady::now() + patience;
    while (Steady::now() < deadline) {
        int status = 0;
        if (::waitpid(m_pid, &status, WNOHANG | WUNTRACED) == m_pid) {
            if (!WIFSTOPPED(status)) {
                m_status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
            }
            return WIFSTOPPED(status);
        }
        collect(std::chrono::milliseconds(5));
    }
    return false;
}

std::optional<ChildProcess::Status> ChildProcess::wait() {
    const auto deadline = Steady::now() + patience;
    while (!reapIfEnded()) {
        if (Steady::now() >= deadline) {
            return std::nullopt;
        }
        collect(std::chrono::milliseconds(20));
    }
    // What it wrote last may still be on its way; the other ends are closed, so none of this waits.
    for (int round = 0; round < 1000 && (m_outputDescriptor >= 0 || m_errorDescriptor >= 0); ++round) {
        collect(std::chrono::milliseconds(0));
    }
    return m_status;
}

} // namespace menubar::e2e
