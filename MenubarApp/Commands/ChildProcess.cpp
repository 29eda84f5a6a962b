#include "MenubarApp/Commands/ChildProcess.h"

#include "MenubarApp/Platform/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <optional>
#include <string_view>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace menubar::ChildProcess {

namespace {

using Clock = std::chrono::steady_clock;

std::unexpected<Failure> launchFailure(int error) {
    return std::unexpected(Failure{.step = Failure::Step::launch, .error = error});
}

struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;
};

/// Moves a descriptor away from 0, 1 and 2, which the child's own are laid over. It lands there when this process was
/// started with one of them closed. 0, or the system's error number.
int keepClearOfStandard(FileDescriptor& descriptor) {
    if (descriptor.get() > STDERR_FILENO) {
        return 0;
    }
    const int moved = ::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (moved < 0) {
        return errno;
    }
    descriptor = FileDescriptor(moved);
    return 0;
}

std::expected<Pipe, int> makePipe() {
    std::array<int, 2> ends{-1, -1};
#ifdef __APPLE__
    // Without pipe2 another thread's child could inherit the ends in between; ours cannot, see `SpawnPlan`.
    const bool isMade = ::pipe(ends.data()) == 0 && ::fcntl(ends[0], F_SETFD, FD_CLOEXEC) == 0 &&
                        ::fcntl(ends[1], F_SETFD, FD_CLOEXEC) == 0;
#else
    const bool isMade = ::pipe2(ends.data(), O_CLOEXEC) == 0;
#endif
    Pipe made{.readEnd = FileDescriptor(ends[0]), .writeEnd = FileDescriptor(ends[1])};
    if (!isMade) {
        return std::unexpected(errno);
    }
    for (FileDescriptor* end : {&made.readEnd, &made.writeEnd}) {
        if (const int error = keepClearOfStandard(*end); error != 0) {
            return std::unexpected(error);
        }
    }
    return made;
}

/// How a child is started. It has three descriptors, the null device and the two pipes, and nothing else stays open;
/// default signals, none blocked.
class SpawnPlan {
public:
    SpawnPlan() {
        record(::posix_spawn_file_actions_init(&m_actions));
        record(::posix_spawnattr_init(&m_attributes));
    }

    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    ~SpawnPlan() {
        ::posix_spawn_file_actions_destroy(&m_actions);
        ::posix_spawnattr_destroy(&m_attributes);
    }

    void setDescriptors(const Pipe& output, const Pipe& errors) {
        record(::posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
        record(::posix_spawn_file_actions_adddup2(&m_actions, output.writeEnd.get(), STDOUT_FILENO));
        record(::posix_spawn_file_actions_adddup2(&m_actions, errors.writeEnd.get(), STDERR_FILENO));
#ifndef __APPLE__
        // Libraries open descriptors that are not close-on-exec, such as the connection to the display.
        record(::posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1));
#endif
    }

    void setAttributes(bool leadsGroup) {
        sigset_t signals;
        sigemptyset(&signals);
        record(::posix_spawnattr_setsigmask(&m_attributes, &signals));
        sigfillset(&signals);
        record(::posix_spawnattr_setsigdefault(&m_attributes, &signals));
#ifdef __APPLE__
        constexpr int descriptors = POSIX_SPAWN_CLOEXEC_DEFAULT;
#else
        constexpr int descriptors = 0; // setDescriptors closes them
#endif
        const int group = leadsGroup ? POSIX_SPAWN_SETPGROUP : 0;
        const int flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | descriptors | group;
        record(::posix_spawnattr_setflags(&m_attributes, static_cast<short>(flags)));
    }

    /// The child's process id, or the system's first error number.
    std::expected<pid_t, int> start(const std::string& executable, char* const* arguments, char* const* variables) {
        pid_t child = -1;
        if (m_error == 0) {
            record(::posix_spawn(&child, executable.c_str(), &m_actions, &m_attributes, arguments, variables));
        }
        return m_error == 0 ? std::expected<pid_t, int>(child) : std::unexpected(m_error);
    }

private:
    void record(int error) { m_error = m_error == 0 ? error : m_error; }

    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
    int m_error = 0;
};

bool hasNul(std::string_view text) {
    return text.find('\0') != std::string_view::npos;
}

/// A null-terminated list of C strings. `texts` outlives it and does not change.
std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

/// Starts the child. The pipes' write ends stay open here.
std::expected<pid_t, int> spawn(const std::string& executable, std::vector<std::string> arguments,
                                const Environment& environment, const Pipe& output, const Pipe& errors,
                                bool leadsGroup) {
    arguments.insert(arguments.begin(), executable);
    std::vector<std::string> variables;
    variables.reserve(environment.size());
    for (const auto& [key, value] : environment) {
        if (key.empty() || key.find('=') != std::string::npos) {
            return std::unexpected(EINVAL);
        }
        std::string& variable = variables.emplace_back(key);
        variable += '=';
        variable += value;
    }
    if (std::ranges::any_of(arguments, hasNul) || std::ranges::any_of(variables, hasNul)) {
        return std::unexpected(EINVAL);
    }
    SpawnPlan plan;
    plan.setDescriptors(output, errors);
    plan.setAttributes(leadsGroup);
    return plan.start(executable, pointers(arguments).data(), pointers(variables).data());
}

/// A started child, waited for exactly once.
class Child {
public:
    Child(pid_t pid, std::optional<Clock::time_point> deadline) : m_pid(pid), m_deadline(deadline) {}

    /// Kills it, with all that it started, when its time is up.
    void heedDeadline() {
        if (m_deadline && Clock::now() >= *m_deadline && !hasEnded() && !m_isOverdue) {
            m_isOverdue = true;
            ::kill(-m_pid, SIGKILL);
        }
    }

    [[nodiscard]] bool isOverdue() const { return m_isOverdue; }

    /// Whether it has ended; never waits.
    bool hasEnded() {
        wait(WNOHANG);
        return m_ended;
    }

    /// Waits for the end. The exit status or the signal's number, or the system's error number.
    std::expected<std::int32_t, int> status() {
        while (m_deadline && !m_isOverdue && !hasEnded()) {
            ::poll(nullptr, 0, 5);
            heedDeadline();
        }
        wait(0);
        if (m_error != 0) {
            return std::unexpected(m_error);
        }
        return WIFSIGNALED(m_status) ? WTERMSIG(m_status) : WEXITSTATUS(m_status);
    }

private:
    void wait(int options) {
        while (!m_ended) {
            const pid_t found = ::waitpid(m_pid, &m_status, options);
            if (found == 0) {
                return;
            }
            if (found < 0 && errno == EINTR) {
                continue;
            }
            m_error = found < 0 ? errno : 0;
            m_ended = true;
        }
    }

    const pid_t m_pid;
    const std::optional<Clock::time_point> m_deadline;
    bool m_isOverdue = false;
    int m_status = 0;
    int m_error = 0;
    bool m_ended = false;
};

/// The reading end of a pipe and what came through it.
class Stream {
public:
    explicit Stream(FileDescriptor descriptor) : m_descriptor(std::move(descriptor)) {}

    [[nodiscard]] bool isOpen() const { return m_descriptor.isOpen(); }

    /// For poll, which skips a closed one.
    [[nodiscard]] pollfd request() const { return {.fd = m_descriptor.get(), .events = POLLIN, .revents = 0}; }

    /// Reads what is there, at least one byte being there or the end. Closes at the end.
    void read() {
        constexpr std::size_t pipeCapacity = std::size_t{64} << 10;
        std::array<char, pipeCapacity> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init): read fills it
        const ssize_t count = ::read(m_descriptor.get(), buffer.data(), buffer.size());
        if (count > 0) {
            m_bytes.append(buffer.data(), std::min(static_cast<std::size_t>(count), maximumOutput - m_bytes.size()));
        } else if (count == 0 || errno != EINTR) {
            close();
        }
    }

    void close() { m_descriptor.close(); }

    std::string takeBytes() { return std::move(m_bytes); }

private:
    FileDescriptor m_descriptor;
    std::string m_bytes;
};

/// Reads both streams side by side until they end, or until the grace after the child's end is over.
void drain(Child& child, Stream& output, Stream& errors) {
    std::optional<Clock::time_point> graceEnd;
    Clock::time_point nextCheck = Clock::now() + exitCheckInterval;
    while (output.isOpen() || errors.isOpen()) {
        std::array requests{output.request(), errors.request()};
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(graceEnd.value_or(nextCheck) - Clock::now());
        const int ready = ::poll(requests.data(), requests.size(), std::max(0, static_cast<int>(wait.count())));
        if (ready < 0 && errno != EINTR) {
            // Nothing can be waited for; a child that goes on writing must not wait for us either.
            output.close();
            errors.close();
            return;
        }
        if (ready > 0 && requests[0].revents != 0) {
            output.read();
        }
        if (ready > 0 && requests[1].revents != 0) {
            errors.read();
        }
        // The outputs were read after the child's end and before this: one read takes all that a pipe can hold.
        const auto now = Clock::now();
        if (graceEnd && now >= *graceEnd) {
            return;
        }
        if (!graceEnd && now >= nextCheck) {
            nextCheck = now + exitCheckInterval;
            child.heedDeadline();
            if (child.hasEnded()) {
                graceEnd = now + outputGrace;
            }
        }
    }
}

/// A SIGCHLD that is ignored, as a careless parent hands it down, or that comes with SA_NOCLDWAIT, makes the system
/// forget how children ended.
void rememberHowChildrenEnd() {
    struct sigaction current{};
    if (::sigaction(SIGCHLD, nullptr, &current) != 0) {
        return;
    }
    const bool isIgnored = (current.sa_flags & SA_SIGINFO) == 0 && current.sa_handler == SIG_IGN;
    if (isIgnored || (current.sa_flags & SA_NOCLDWAIT) != 0) {
        current.sa_flags &= ~SA_NOCLDWAIT;
        if (isIgnored) {
            current.sa_handler = SIG_DFL;
        }
        ::sigaction(SIGCHLD, &current, nullptr);
    }
}

} // namespace

std::expected<Result, Failure> run(const std::string& executable, const std::vector<std::string>& arguments,
                                   const Environment& environment, std::optional<std::chrono::milliseconds> limit) {
    rememberHowChildrenEnd();
    auto output = makePipe();
    if (!output) {
        return launchFailure(output.error());
    }
    auto errors = makePipe();
    if (!errors) {
        return launchFailure(errors.error());
    }
    const auto pid = spawn(executable, arguments, environment, *output, *errors, limit.has_value());
    if (!pid) {
        return launchFailure(pid.error());
    }
    output->writeEnd.close();
    errors->writeEnd.close();

    Child child(*pid, limit ? std::optional(Clock::now() + *limit) : std::nullopt);
    Stream outputStream(std::move(output->readEnd));
    Stream errorStream(std::move(errors->readEnd));
    drain(child, outputStream, errorStream);
    const auto status = child.status();
    if (!status) {
        return std::unexpected(Failure{.step = Failure::Step::wait, .error = status.error()});
    }
    return Result{.status = *status,
                  .standardOutput = outputStream.takeBytes(),
                  .standardError = errorStream.takeBytes(),
                  .isOverdue = child.isOverdue()};
}

} // namespace menubar::ChildProcess
